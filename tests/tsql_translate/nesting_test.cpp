#include <gtest/gtest.h>

#include "fake_catalog.h"
#include "velmora/com/error.h"

namespace velmora::tsql::test {
namespace {

constexpr std::string_view kTable = "create table t(n int, d decimal(18,4), s varchar(20))";
constexpr std::size_t kLevels = 60;

/// Beginning and end of one level, and what stands innermost.
struct Nested {
  std::string_view open, close, core;
};

std::string nested(const Nested& form) {
  std::string text;
  for (std::size_t i = 0; i < kLevels; ++i) text += form.open;
  text += form.core;
  for (std::size_t i = 0; i < kLevels; ++i) text += form.close;
  return text;
}

// Each level that named an operand twice would double the text of all levels within it.
TEST(Nesting, CostsLinearText) {
  Translator translator{kTable};
  for (const Nested& form :
       std::initializer_list<Nested>{{"1 / (", ")", "n"},
                                     {"1.5 / (", ")", "d"},
                                     {"1e0 / (", ")", "n"},
                                     {"7 % (", ")", "n"},
                                     {"1.5 * (", ")", "d"},
                                     {"(", " + d)", "d"},
                                     {"-(", ")", "d"},
                                     {"~(", ")", "n"},
                                     {"(s + ", ")", "s"},
                                     {"(", " + 1)", "s"},
                                     {"nullif(", ", 7)", "n"},
                                     {"nullif(", ", d)", "d"},
                                     {"nullif(", ", 'x')", "s"},
                                     {"nullif(7, ", ")", "n"},
                                     {"isnull(", ", 1)", "n"},
                                     {"coalesce(", ", d, 1)", "d"},
                                     {"case ", " when 1 then 2 when 3 then 4 else 5 end", "n"},
                                     {"case ", " when 'a' then 'b' when 'c' then s end", "s"},
                                     {"case n when 1 then 2 when 3 then ", " end", "n"},
                                     {"case when s = ", " then 2 else 3 end", "4"},
                                     {"case when n between ", " and 9 then 2 else 3 end", "s"},
                                     {"case when s in (", ", '5') then 2 else 3 end", "4"},
                                     {"case when s like ", " then 'a' else 'b' end", "n"},
                                     {"round(", ", 1)", "d"},
                                     {"round(", ", 1, 1)", "d"},
                                     {"round(", ", -1, 1)", "n"},
                                     {"abs(", ")", "s"},
                                     {"sign(", ")", "d"},
                                     {"floor(", ")", "d"},
                                     {"power(", ", 2)", "d"},
                                     {"cast(", " as varchar(20))", "n"},
                                     {"cast(cast(", " as varchar(20)) as int)", "n"},
                                     {"cast(cast(", " as decimal(9,2)) as money)", "d"},
                                     {"convert(varchar(30), cast(", " as datetime), 120)", "s"},
                                     {"concat('a', ", ")", "n"},
                                     {"charindex('1', ", ")", "s"},
                                     {"replace(", ", s, 'b')", "s"},
                                     {"substring(", ", 1, n)", "s"},
                                     {"stuff(", ", 1, 1, s)", "s"},
                                     {"upper(ltrim(rtrim(", ")))", "s"},
                                     {"isnumeric(", ")", "s"},
                                     {"isdate(", ")", "s"},
                                     {"datalength(", ")", "n"},
                                     {"str(", ")", "n"},
                                     {"dateadd(day, n, ", ")", "s"},
                                     {"datediff(day, 0, ", ")", "n"},
                                     {"datepart(week, ", ")", "n"}}) {
    const std::string sql = "select " + nested(form) + " x from t";
    EXPECT_LT(translator.sql(sql).size(), 300 * kLevels + 500) << form.open << form.close;
  }
}

TEST(Nesting, OfConditionsThatCanFailCostsLinearText) {
  Translator translator{kTable};
  for (const Nested& form :
       std::initializer_list<Nested>{{"(s = 1 and ", ")", "s = 2"},
                                     {"(s = 1 or ", ")", "s = 2"},
                                     {"(n = 1 and s = 1 and (n = 2 or ", "))", "s = 2"},
                                     {"not (s = 1 and ", ")", "s = 2"},
                                     {"not (n = 1 or s = 1 or ", ")", "s = 2"}}) {
    const std::string sql = "select 1 x from t where " + nested(form);
    EXPECT_LT(translator.sql(sql).size(), 300 * kLevels + 500) << form.open;
  }
}

/// What still doubles with each level (here an order that repeats its query) ends with a
/// limit of ours and its place, before memory does.
TEST(Nesting, ThatOutgrowsTheEngineIsRefused) {
  Translator translator{kTable};
  const std::string sql =
      "select " + nested({"(select top 1 1 + ", " x from t order by 1 desc)", "1"}) + " x";
  try {
    translator.sql(sql);
    FAIL() << "nothing was refused";
  } catch (const com::Error& error) {
    EXPECT_EQ(error.description().find("191: This statement is too deep"), 0U)
        << error.description().substr(0, 200);
    EXPECT_NE(error.description().find("(line 1, column "), std::string::npos);
  }
}

}  // namespace
}  // namespace velmora::tsql::test
