#include "velmora/collections/date.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "error_of.h"

namespace velmora::collections {
namespace {

TEST(Date, ReadsTheDocumentedFormsOnly) {
  struct Case {
    const char* text;
    const char* expected;  // "" for refused
  };
  for (const Case& c : {
           Case{"2009-03-01", "2009-03-01"},
           {"2009/03/01", "2009-03-01"},
           {"20090301", "2009-03-01"},
           {"2008-02-29", "2008-02-29"},
           {"2009-03-01 00:00", "2009-03-01"},
           {"2009-03-01T10:20", "2009-03-01 10:20:00"},
           {"20090301 23:59:59.5", "2009-03-01 23:59:59.5"},
           {"2009-03-01 10:20:30.0500001", "2009-03-01 10:20:30.05"},
           {"1899-12-30 01:00:00.000001", "1899-12-30 01:00:00.000001"},
           {"0001-01-01", "0001-01-01"},
           {"9999-12-31 23:59:59.999999", "9999-12-31 23:59:59.999999"},
           {"2009-02-29", ""},
           {"1900-02-29", ""},
           {"2009-13-01", ""},
           {"2009-00-10", ""},
           {"0000-01-01", ""},
           {"2009-3-1", ""},
           {"2009-03/01", ""},
           {"200903-01", ""},
           {"2009-03-01 24:00", ""},
           {"2009-03-01 10:60", ""},
           {"2009-03-01 10:20:60", ""},
           {"2009-03-01 10:20:30.", ""},
           {"2009-03-01 10", ""},
           {"2009-03-01 ", ""},
           {" 2009-03-01", ""},
           {"2009-03-01Z", ""},
           {"-009-03-01", ""},
           {"", ""},
       }) {
    const auto date = Date::tryParse(c.text);
    EXPECT_EQ(date ? date->toString() : "", c.expected) << "'" << c.text << "'";
  }
}

TEST(Date, NamesThePartsOfADayThatIsNone) {
  const auto error = errorOf([] { Date::ymd(2009, 2, 30); });
  EXPECT_EQ(error.number(), com::error::kInvalidArgument);
  EXPECT_EQ(error.description(), "there is no date 2009-02-30 00:00:00.000000");
}

TEST(Date, TimesBefore1970BelongToTheirOwnDay) {
  const Date date = Date::fromMicroseconds(-1);
  EXPECT_EQ(date.toString(), "1969-12-31 23:59:59.999999");
  EXPECT_EQ(date.toDateText(), "1969-12-31");
  EXPECT_TRUE(date.hasTime());
  EXPECT_FALSE(Date::today().hasTime());
  EXPECT_LT(Date::ymd(1969, 12, 31), date);
}

RC_GTEST_PROP(DateProperty, PartsAndTextGiveTheSameDateBack, ()) {
  const std::int64_t first = Date::ymd(1, 1, 1).microseconds();
  const std::int64_t last = Date::ymd(9999, 12, 31).microseconds();
  const Date date = Date::fromMicroseconds(*rc::gen::inRange(first, last));
  RC_ASSERT(Date::fromParts(date.parts()) == date);
  RC_ASSERT(Date::tryParse(date.toString()) == date);
}

}  // namespace
}  // namespace velmora::collections
