#include "velmora/collections/variant.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

#include "error_of.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora::collections {
namespace {

/// What `read` gives as text, or the number of the error it raises.
template <class Value>
std::string outcome(const Variant& value, Value (Variant::*read)() const) {
  try {
    return Variant((value.*read)()).toText();
  } catch (const com::Error& error) {
    switch (error.number()) {
      case com::error::kOverflow:
        return "overflow";
      case com::error::kInvalidUseOfNull:
        return "null";
      case com::error::kTypeMismatch:
        return "mismatch";
      default:
        return error.description();
    }
  }
}

TEST(Variant, ConvertsByTheRulesOfTheSuite) {
  struct Case {
    Variant value;
    const char *int32, *decimal, *real, *boolean, *text, *date;
  };
  const char* const mismatch = "mismatch";
  for (const Case& c : {
           Case{{}, "0", "0", "0", "False", "", "1899-12-30"},
           {Null(), "null", "null", "null", "null", "null", "null"},
           {true, "-1", "-1", "-1", "True", "True", mismatch},
           {std::int16_t{-7}, "-7", "-7", "-7", "True", "-7", mismatch},
           {std::int64_t{3'000'000'000}, "overflow", "3000000000", "3000000000", "True",
            "3000000000", mismatch},
           {2.75, "2", "2.75", "2.75", "True", "2.75", mismatch},
           {-0.1, "0", "-0.1", "-0.1", "True", "-0.1", mismatch},
           {100000.0, "100000", "100000", "100000", "True", "100000", mismatch},
           {1e30, "overflow", "1000000000000000000000000000000", "1e+30", "True", "1e+30",
            mismatch},
           {1e300, "overflow", "overflow", "1e+300", "True", "1e+300", mismatch},
           {std::numeric_limits<double>::quiet_NaN(), "overflow", "overflow", "nan", "True", "nan",
            mismatch},
           {Decimal::parse("-12.500"), "-12", "-12.5", "-12.5", "True", "-12.5", mismatch},
           {Decimal::parse("0.00"), "0", "0", "0", "False", "0", mismatch},
           {Date::ymd(2009, 3, 1), mismatch, mismatch, mismatch, mismatch, "2009-03-01",
            "2009-03-01"},
           {"", "0", "0", "0", "False", "", mismatch},
           {"12a", "12", "12", "12", "True", "12a", mismatch},
           {" 7 ", "7", "7", "7", "True", " 7 ", mismatch},
           {"-3.5x", "-3", "-3.5", "-3.5", "True", "-3.5x", mismatch},
           {"+.5", "0", "0.5", "0.5", "True", "+.5", mismatch},
           {"5.", "5", "5", "5", "True", "5.", mismatch},
           {"1e2z", "100", "100", "100", "True", "1e2z", mismatch},
           {"2e", "2", "2", "2", "True", "2e", mismatch},
           {"- 3", "0", "0", "0", "False", "- 3", mismatch},
           {".", "0", "0", "0", "False", ".", mismatch},
           {"x", "0", "0", "0", "False", "x", mismatch},
           {"TRUE", "0", "0", "0", "True", "TRUE", mismatch},
           {"false", "0", "0", "0", "False", "false", mismatch},
           {"99999999999", "overflow", "99999999999", "99999999999", "True", "99999999999",
            mismatch},
           {"1e999", "overflow", "overflow", "overflow", "overflow", "1e999", mismatch},
           {"2009-03-01 10:00", "2009", "2009", "2009", "True", "2009-03-01 10:00",
            "2009-03-01 10:00:00"},
           {com::make<Vector>(), mismatch, mismatch, mismatch, mismatch, mismatch, mismatch},
       }) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(outcome(c.value, &Variant::toInt32), c.int32);
    EXPECT_EQ(outcome(c.value, &Variant::toDecimal), c.decimal);
    EXPECT_EQ(outcome(c.value, &Variant::toDouble), c.real);
    EXPECT_EQ(outcome(c.value, &Variant::toBool), c.boolean);
    EXPECT_EQ(outcome(c.value, &Variant::toText), c.text);
    EXPECT_EQ(outcome(c.value, &Variant::toDate), c.date);
  }
}

TEST(Variant, KeepsTheLimitsOfItsIntegers) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(Variant(most).toInt64(), most);
  EXPECT_EQ(Variant("9223372036854775807").toInt64(), most);
  EXPECT_EQ(outcome("9223372036854775808", &Variant::toInt64), "overflow");
  EXPECT_EQ(outcome(9223372036854775808.0, &Variant::toInt64), "overflow");
  EXPECT_EQ(Variant(-9223372036854775808.0).toInt64(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(Variant(-32768).toInt16(), -32768);
  EXPECT_EQ(outcome(32768, &Variant::toInt16), "overflow");
}

TEST(Variant, ErrorsNameTheValueAndWhatWasExpected) {
  EXPECT_EQ(errorOf([] { Variant(40000).toInt16(); }).description(),
            "Int32 '40000' does not fit Int16");
  EXPECT_EQ(errorOf([] { Variant("2009-02-30").toDate(); }).description(),
            "String '2009-02-30' cannot be read as Date");
  EXPECT_EQ(errorOf([] { Variant(Null()).toDecimal(); }).description(),
            "Null cannot be read as Decimal");
}

TEST(Variant, AConnectionStringInTheWrongPlaceDoesNotReachAMessage) {
  const Variant value("Provider=SQLOLEDB.1;User ID=sa;Password=secret;Data Source=here");
  for (const auto& read : std::vector<std::function<void()>>{
           [&] { value.toDate(); }, [&] { value.toObject(); }, [&] { value.toObject<Vector>(); }})
    EXPECT_EQ(errorOf(read).description().find("secret"), std::string::npos);
}

TEST(Variant, EqualsByTypeAndValue) {
  EXPECT_EQ(Variant(Decimal::parse("1.5")), Variant(Decimal::parse("1.50")));
  EXPECT_EQ(Variant("a"), Variant(std::string("a")));
  EXPECT_FALSE(Variant("a") == Variant("A"));
  EXPECT_FALSE(Variant(1) == Variant(std::int64_t{1}));
  EXPECT_FALSE(Variant() == Variant(Null()));
  EXPECT_FALSE(Variant("") == Variant());
  const auto vector = com::make<Vector>();
  EXPECT_EQ(Variant(vector), Variant(com::Ref<com::IUnknown>(vector)));
  EXPECT_FALSE(Variant(vector) == Variant(com::make<Vector>()));
}

TEST(Variant, ObjectsAreFoundByInterface) {
  const auto vector = com::make<Vector>();
  const Variant value(vector);
  EXPECT_EQ(value.toObject<Vector>(), vector);
  EXPECT_EQ(errorOf([&] { value.toObject<Dictionary>(); }).number(), com::error::kTypeMismatch);
  EXPECT_EQ(errorOf([] { Variant(1).toObject(); }).number(), com::error::kTypeMismatch);
  EXPECT_EQ(errorOf([] { Variant(Null()).toObject(); }).number(), com::error::kInvalidUseOfNull);
  const Variant nothing{VectorRef()};
  EXPECT_EQ(nothing.type(), VarType::object);
  EXPECT_EQ(nothing.toObject<Dictionary>(), nullptr);
  EXPECT_EQ(Variant().toObject<Vector>(), nullptr);
}

TEST(Variant, CopiesShareTextAndObjectAndOutliveTheOriginal) {
  const std::string text("a text with a zero \0 inside", 27);
  auto original = std::make_unique<Variant>(text);
  Variant copy = *original;
  EXPECT_EQ(copy.text().data(), original->text().data());
  original.reset();
  EXPECT_EQ(copy.text(), text);
  copy = *&copy;
  EXPECT_EQ(copy.text(), text);
  const Variant moved = std::move(copy);
  EXPECT_EQ(moved.text(), text);

  Variant object(com::make<Vector>());
  object.toObject<Vector>()->Add("kept");
  Variant second = object;
  object = 5;
  EXPECT_EQ(second.toObject<Vector>()->Item(0).text(), "kept");
}

TEST(Variant, ThreadsCopyOneTextAtOnce) {
  const Variant shared("shared text");
  const auto copyOften = [&] {
    for (int i = 0; i < 10'000; ++i) {
      const Variant copy = shared;
      ASSERT_EQ(copy.text().size(), 11U);
    }
  };
  std::thread other(copyOften);
  copyOften();
  other.join();
  EXPECT_EQ(shared.text(), "shared text");
}

}  // namespace
}  // namespace velmora::collections
