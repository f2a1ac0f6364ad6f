#include "platform/tsql/translate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake_catalog.h"
#include "velmora/com/error.h"

namespace velmora::tsql::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view kTables = R"(
create table t_account(FAccountID int primary key, FNumber varchar(30), FName nvarchar(40))
create table t_item(FItemID int, FClass int, FNumber varchar(80), unique (FClass, FNumber))
create table t_balance(FYear int, FAccountID int, FAmount decimal(28,4), FRate float)
create table #work(FID int identity primary key, FAcctID int, FName varchar(9), FAmount decimal(28,4) default(0))
)";

class Translating : public testing::Test {
 protected:
  std::string errorOf(std::string_view sql) {
    try {
      translator.translation(sql);
    } catch (const com::Error& error) {
      EXPECT_EQ(error.number(), com::error::kProvider);
      return error.description();
    }
    return "none";
  }

  Translator translator{kTables};
};

// The engine joins and filters fast on bare columns only.
TEST_F(Translating, LeavesNumericJoinKeysAndFiltersBare) {
  const std::string sql = translator.sql(
      "select sum(b.FAmount) from t_balance b inner join t_account a on b.FAccountID = "
      "a.FAccountID where b.FYear = 2009 and b.FAmount > 0");
  EXPECT_THAT(sql, AllOf(HasSubstr(R"(ON ("b"."FAccountID" = "a"."FAccountID"))"),
                         HasSubstr(R"(("b"."FYear" = 2009) AND ("b"."FAmount" > 0))")));
}

TEST_F(Translating, FoldsConstantsOnce) {
  EXPECT_THAT(translator.sql("select 1 from t_account where FNumber = 'AR1 '"),
              HasSubstr(R"( ELSE "t_account"."FNumber" END) = 'ar1')"));
  EXPECT_THAT(translator.sql("select 1 from t_balance where FYear = '2009'"),
              HasSubstr(R"("FYear" = 2009)"));
  EXPECT_THAT(translator.sql("select 1 from t_balance where FYear = year(getdate()) and "
                             "'2009/03/05' = convert(varchar(30), getdate(), 111)"),
              HasSubstr("('2009/03/05' = '2009/03/05')"));
}

TEST_F(Translating, ReachesWhatCanFailOnlyWhereTheOtherConditionsHold) {
  EXPECT_THAT(translator.sql("select 1 from t_account where FAccountID = 5 and FNumber = 7"),
              AllOf(HasSubstr(R"(("t_account"."FAccountID" = 5) AND CASE WHEN )"),
                    HasSubstr("ELSE FALSE END")));
}

TEST_F(Translating, SortsOnlyWhereTheRowsWouldComeInAnyOrder) {
  EXPECT_THAT(translator.sql("select * from t_account"), Not(HasSubstr("ORDER BY")));
  EXPECT_THAT(translator.sql("select count(*) n from t_account a, t_balance b"),
              Not(HasSubstr("ORDER BY")));
  EXPECT_THAT(translator.sql("select 1 from t_account a, t_balance b"),
              HasSubstr(R"(ORDER BY "a".rowid ASC NULLS FIRST, "b".rowid ASC NULLS FIRST)"));
  const auto orderOf = [&](std::string_view from) {
    const std::string sql = translator.sql(std::string("select 1 from ") + std::string(from));
    const auto at = sql.find("ORDER BY");
    return at == std::string::npos ? "" : sql.substr(at + 9);
  };
  for (const std::string_view keyed :
       {"t_balance b inner join t_account a on a.FAccountID = b.FAccountID",
        "t_balance b left join t_account a on a.FAccountID = b.FAccountID and a.FNumber > ''",
        "t_balance b, t_account a where b.FAmount > 0 and b.FAccountID = a.FAccountID",
        "t_balance b inner join (select FAccountID, sum(FAmount) s from t_balance group by "
        "FAccountID) k on k.FAccountID = b.FAccountID"})
    EXPECT_EQ(orderOf(keyed), R"("b".rowid ASC NULLS FIRST)") << keyed;
  EXPECT_THAT(orderOf("t_balance b, (select FAccountID i, FName n from t_account) k"),
              StartsWith(R"("b".rowid ASC NULLS FIRST, "k"."i" ASC)"))
      << "the name follows from the key";
  EXPECT_THAT(orderOf("t_balance b, (select FName n from t_account) k"), HasSubstr(R"("k"."n")"));
  for (const std::string_view several :
       {"t_account a inner join t_balance b on a.FAccountID = b.FAccountID",
        "t_balance b inner join t_account a on a.FAccountID > b.FAccountID",
        "t_balance b, t_account a where b.FAccountID = a.FAccountID or b.FAmount > 0",
        "t_balance b full join t_account a on a.FAccountID = b.FAccountID"})
    EXPECT_THAT(orderOf(several), HasSubstr(", ")) << several;
  EXPECT_THAT(
      translator.sql("select * from (select top 1 a.FName from t_account a, t_balance b) k"),
      HasSubstr("LIMIT 1"));
}

TEST_F(Translating, UpdatesInPlaceWhereEachRowMeetsOneOther) {
  EXPECT_THAT(
      translator.sql("update w set w.FAmount = b.s from #work w inner join (select FAccountID, "
                     "sum(FAmount) s from t_balance group by FAccountID) b on b.FAccountID = "
                     "w.FAcctID"),
      AllOf(HasSubstr(R"(UPDATE temp."#work" AS "w" SET "FAmount" = )"), Not(HasSubstr("rowid"))));
  EXPECT_THAT(translator.sql("update w set FAmount = b.FAmount from #work w inner join t_balance b "
                             "on b.FAccountID = w.FAcctID"),
              HasSubstr(R"(DISTINCT ON ("w".rowid))"));
  EXPECT_THAT(translator.sql("update w set FAmount = 1 from #work w left join t_account a on "
                             "a.FAccountID = w.FAcctID"),
              AllOf(HasSubstr("u.rowid = s.rid"), Not(HasSubstr("DISTINCT"))));
  const auto byDerived = [&](std::string_view derived) {
    return translator.sql("update w set FAmount = 1 from #work w inner join (" +
                          std::string(derived) + ") k on k.i = w.FAcctID");
  };
  EXPECT_THAT(byDerived("select FAccountID i from t_account"), Not(HasSubstr("DISTINCT")));
  EXPECT_THAT(byDerived("select FAccountID i from t_balance"), HasSubstr("DISTINCT"));
  const auto byNumber = [&](std::string_view number) {
    return translator.sql(std::string("update w set FAmount = 1 from #work w left join t_item i on "
                                      "i.FClass = 1 and i.FNumber = ") +
                          std::string(number));
  };
  EXPECT_THAT(byNumber("w.FName"), Not(HasSubstr("DISTINCT")));
  EXPECT_THAT(byNumber("w.FAcctID"), HasSubstr("DISTINCT"));
  EXPECT_THAT(translator.sql("update w set FAmount = v.FAmount from #work w inner join #work v on "
                             "v.FID = w.FID where v.FID > 1"),
              HasSubstr("AS MATERIALIZED"));
}

TEST_F(Translating, NumbersInsertedRowsFromTheCounter) {
  translator.catalog.next = 41;
  EXPECT_THAT(translator.sql("insert into #work(FAcctID) values(1), (2)"),
              AllOf(HasSubstr("(41, 1,"), HasSubstr("(42, 2,")));
  const auto change = std::get<Change>(
      translator.translation("insert into #work(FAcctID) select FAccountID from t_account").action);
  EXPECT_THAT(change.sql, HasSubstr("40 + row_number() OVER ()"));
  EXPECT_EQ(change.identityTable, "#work");
}

TEST_F(Translating, NamesTheDecimalFunctionsOnce) {
  const auto functions =
      translator.translation("select FAmount / 3, FAmount / 7 from t_balance").functions;
  ASSERT_EQ(functions.size(), 1U);
  EXPECT_EQ(functions.front().name(), "velmora_div_4_0_6");
}

TEST_F(Translating, GivesTypesAndWrittenNamesOfColumns) {
  const auto rows = std::get<Rows>(
      translator.translation("select fnumber, FNAME as n, FAccountID + 1, null x from t_account")
          .action);
  ASSERT_EQ(rows.columns.size(), 4U);
  EXPECT_EQ(rows.columns[0].name, "fnumber");
  EXPECT_EQ(declaration(rows.columns[1].type), "nvarchar(40)");
  EXPECT_EQ(rows.columns[2].name, "");
  EXPECT_EQ(declaration(rows.columns[3].type), "int");
}

TEST_F(Translating, TakesVariablesAndParametersAsTypedValues) {
  translator.variables["@Year"] = {SqlType::integer(), std::int32_t{2009}};
  translator.parameters = {{SqlType::varchar(30), collections::Variant("O'Hara \"x\"")}};
  EXPECT_THAT(translator.sql("select 1 from t_account where FNumber = ? and FAccountID = @YEAR"),
              AllOf(HasSubstr("'o''hara \"x\"'"), HasSubstr("= 2009")));
  EXPECT_THAT(errorOf("select 1 from t_account where FNumber = ? and FName = ?"),
              HasSubstr("201: Parameter 2"));
}

TEST_F(Translating, ChangesOnlyTemporaryTablesWhenReadOnly) {
  translator.readOnly = true;
  for (const std::string_view change :
       {"insert into t_account values(1,'a','b')", "update t_account set FName = ''",
        "delete from t_account", "truncate table t_account", "drop table t_account",
        "create table t_new(a int)", "select 1 a into t_new",
        "update a set FName = '' from t_account a, #work w"}) {
    EXPECT_THAT(errorOf(change), HasSubstr("3906: ")) << change;
  }
  EXPECT_EQ(errorOf("update #work set FAcctID = 1"), "none");
  EXPECT_EQ(errorOf("select 1 a into #new"), "none");
}

TEST_F(Translating, RefusesWithNameAndPlace) {
  EXPECT_EQ(errorOf("select 1\n  from t_x"), "208: Invalid object name 't_x'. (line 2, column 8)");
  EXPECT_EQ(errorOf("select FAccountID, FNo from t_account"),
            "207: Invalid column name 'FNo'. (line 1, column 20)");
  EXPECT_THAT(errorOf("select newsequentialid()"),
              HasSubstr("'newsequentialid' is not a recognized"));
  EXPECT_THAT(errorOf("select * from other.dbo.t_account"), HasSubstr("another database"));
  EXPECT_THAT(errorOf("select datepart(fortnight, getdate())"), HasSubstr("155: 'fortnight'"));
  EXPECT_THAT(errorOf("insert into #work(FAcctID, FAcctID) values(1, 2)"), HasSubstr("264: "));
  EXPECT_THAT(errorOf("select FName, count(*) from t_account group by FNumber"),
              HasSubstr("8120: Column 'FName'"));
}

TEST_F(Translating, KeepsACallToTheClockInADefault) {
  const auto created = std::get<CreateTable>(
      translator.translation("create table #d(a int, d datetime default(getdate()))").action);
  EXPECT_EQ(created.table.columns[1].defaultText, "getdate()");
  EXPECT_THAT(translator.sql("select getdate() d"), HasSubstr("TIMESTAMP '2009-03-05'"));
}

// What the engine says quotes its own types and statements; none of it may be read by users.
TEST(EngineErrors, AreSaidInTheServersWordsAlone) {
  for (const auto& [engine, answer] : std::initializer_list<std::pair<const char*, const char*>>{
           {"Invalid Input Error: 245: Conversion failed.", "245: Conversion failed."},
           {"Out of Range Error: Overflow in addition of INT32 (1 + 2)!",
            "8115: Arithmetic overflow error converting expression to data type int."},
           {"Invalid Input Error: Type INT128 with value 2147483648 can't be cast because the "
            "value "
            "is out of range for the destination type INT32",
            "8115: Arithmetic overflow error converting expression to data type int."},
           {"Conversion Error: Failed to cast decimal value 999 to type INT16",
            "8115: Arithmetic overflow error converting expression to data type smallint."},
           {"Conversion Error: Casting value \"1.0\" to type DECIMAL(2,2) failed: value is out of "
            "range!",
            "8115: Arithmetic overflow error converting expression to data type numeric."},
           {"Conversion Error: Could not convert string 'x' to INT32\n\nLINE 1",
            "8114: Error converting data type."},
           {"Parser Error: Max expression depth limit of 1000 exceeded. Use \"SET ...",
            "191: This statement is too deep; break it up into smaller ones."},
           {"Out of Range Error: cannot take square root of a negative number",
            "3623: An invalid floating point operation occurred."},
           {"Invalid Input Error: basic_string::append", "none"},
           {"Binder Error: Referenced table \"q\" not found!", "none"}})
    EXPECT_EQ(sqlServerError(engine).value_or("none"), answer) << engine;
}

}  // namespace
}  // namespace velmora::tsql::test
