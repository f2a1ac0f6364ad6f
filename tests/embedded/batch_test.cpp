#include <gmock/gmock.h>

#include "database.h"

namespace velmora::ado::embedded::test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Batch : public testing::Test {
 protected:
  ConnectionPtr connection_ = inMemory();
};

TEST_F(Batch, AnswersEveryStatementInOrder) {
  const auto results = run(*connection_, R"(
create table #t(a int)
insert into #t values(1)
insert into #t select a + 1 from #t
select a from #t order by a
update #t set a = a * 10
select sum(a) s into #s from #t
delete from #t where a > 10
select s from #s)");
  ASSERT_EQ(results.size(), 7U);
  EXPECT_EQ(results[0].recordsAffected, 1);
  EXPECT_EQ(results[1].recordsAffected, 1);
  EXPECT_TRUE(results[2].hasRows);
  EXPECT_EQ(results[2].recordsAffected, -1);
  EXPECT_EQ(texts(results[2].rows), (Texts{{"1"}, {"2"}}));
  EXPECT_EQ(results[3].recordsAffected, 2);
  EXPECT_EQ(results[4].recordsAffected, 1);
  EXPECT_EQ(results[5].recordsAffected, 1);
  EXPECT_EQ(texts(results[6].rows), (Texts{{"30"}}));
}

TEST_F(Batch, NoCountLeavesOutTheCounts) {
  run(*connection_, "set nocount on");
  EXPECT_EQ(run(*connection_, "create table #t(a int); insert into #t values(1)").size(), 0U);
  EXPECT_EQ(query(*connection_, "update #t set a = 2; select @@rowcount n"), (Texts{{"1"}}));
  EXPECT_EQ(run(*connection_, "set nocount off; delete from #t").size(), 1U);
}

TEST_F(Batch, VariablesTakeTheirDeclaredType) {
  EXPECT_EQ(query(*connection_, R"(
declare @n int, @d decimal(10,2), @s varchar(3), @never datetime, @first int = 4
set @N = '12' set @d = 1.005 set @s = 'abcdef'
select @n n, @d d, @s s, @never never, @first first)"),
            (Texts{{"12", "1.01", "abc", "NULL", "4"}}));
  EXPECT_EQ(query(*connection_, R"(
declare @a int, @b int set @b = 9
select @a = v.a, @b = v.a + 1 from (select 1 a union all select 5) v order by v.a
select @a = v.a from (select 1 a) v where v.a > 1
select @a a, @b b, @@rowcount n)"),
            (Texts{{"5", "6", "0"}}));
}

TEST_F(Batch, OnlyTheTakenBranchMustResolve) {
  EXPECT_EQ(query(*connection_, R"(
if 1 = 2 begin declare @v int select * from nowhere end
else begin set @v = 3 if @v = 3 select 'three' x else select * from nowhere end)"),
            (Texts{{"three"}}));
  EXPECT_EQ(query(*connection_, "if null = 1 select 1 x else select 2 x"), (Texts{{"2"}}));
}

TEST_F(Batch, ErrorsCarrySqlServersNumberAndThePlace) {
  run(*connection_, "create table t(a int not null primary key, n varchar(3), d decimal(4,2))");
  run(*connection_, "insert into t values(1, 'x', 0)");
  const std::pair<const char*, const char*> cases[] = {
      {"select 1/0 a", "8134: Divide by zero"},
      {"declare @z int set @z = 0 select 1/@z a", "8134"},
      {"select 1.5 / d a from t", "8134"},
      {"select convert(int, 'x' + n) a from t", "245"},
      {"insert into t values(1, 'y', 0)", "2627"},
      {"insert into t(a) values(null)", "515"},
      {"insert into t values(2, 'long', 0)", "8152"},
      {"select b from t", "207"},
      {"select * from nowhere", "208"},
      {"drop table #nowhere", "3701"},
      {"set @nobody = 1", "137"},
      {"declare @a int declare @A int", "134"},
      {"commit", "3902"},
      {"rollback", "3903"},
  };
  for (const auto& [batch, expected] : cases)
    EXPECT_THAT(failure(*connection_, batch),
                AllOf(HasSubstr(expected), HasSubstr("line 1"), Not(HasSubstr("LINE"))))
        << batch;
  EXPECT_THAT(failure(*connection_, "select 1 a\n\n  select 1/0 b"), HasSubstr("line 3, column 3"));
}

TEST_F(Batch, AFailedStatementEndsTheBatchAndTheConnectionGoesOn) {
  EXPECT_NE(failure(*connection_, R"(
create table #t(a int) insert into #t values(1)
select 1/0 x
insert into #t values(2))"),
            "");
  EXPECT_EQ(query(*connection_, "select a from #t"), (Texts{{"1"}}));
  EXPECT_NE(failure(*connection_, "select from"), "");
  EXPECT_EQ(query(*connection_, "select a from #t"), (Texts{{"1"}}));
}

TEST_F(Batch, TransactionsRollBackRowsTablesAndNumbers) {
  run(*connection_, "create table t(FID int identity, a int); insert into t(a) values(1)");
  run(*connection_, R"(
begin tran
insert into t(a) values(2)
create table #gone(a int) create table gone(a int)
truncate table t
rollback)");
  EXPECT_THAT(failure(*connection_, "select * from #gone"), HasSubstr("208"));
  EXPECT_THAT(failure(*connection_, "select * from gone"), HasSubstr("208"));
  run(*connection_, "begin tran begin tran insert into t(a) values(3) commit commit");
  EXPECT_EQ(query(*connection_, "select a from t order by FID"), (Texts{{"1"}, {"3"}}));
  EXPECT_EQ(query(*connection_, "select count(distinct FID) n from t"), (Texts{{"2"}}));
}

TEST_F(Batch, AFailureRollsBackTheOpenTransaction) {
  run(*connection_, "create table t(a int)");
  EXPECT_NE(failure(*connection_, "begin tran insert into t values(1) select 1/0 x"), "");
  EXPECT_EQ(query(*connection_, "select count(*) n from t"), (Texts{{"0"}}));
  EXPECT_THAT(failure(*connection_, "commit"), HasSubstr("3902"));
}

TEST_F(Batch, ParametersAreTypedValues) {
  using collections::Date;
  using collections::Decimal;
  const std::vector<ParameterValue> values{
      {adInteger, 0, Variant("42")},
      {adNumeric, 0, Variant(Decimal::parse("1234567890123456789.01234567890123456"))},
      {adVarChar, 20, Variant("o'clock; --")},
      {adDBTimeStamp, 0, Variant(Date::ymd(2009, 3, 1))},
      {adVarWChar, 3, Variant("应收款")},
      {adDouble, 0, Variant(0.1)},
      {adBoolean, 0, Variant(true)},
      {adInteger, 0, Variant(collections::Null{})},
  };
  EXPECT_EQ(query(*connection_, "select ? a, ? b, ? c, ? d, ? e, ? f, ? g, ? h", values),
            (Texts{{"42", "1234567890123456789.01234567890123456", "o'clock; --", "2009-03-01",
                    "应收款", "0.1", "True", "NULL"}}));
}

TEST_F(Batch, ParametersThatDoNotFitAreRefused) {
  const auto refused = [&](const char* batch, std::vector<ParameterValue> values) {
    return failure(*connection_, batch, values);
  };
  EXPECT_THAT(refused("select ? a", {{adVarWChar, 2, Variant("应收款")}}),
              HasSubstr("parameter 1"));
  EXPECT_THAT(refused("select ? a", {{adInteger, 0, Variant("12a")}}), HasSubstr("'12a'"));
  EXPECT_THAT(refused("select ? a, ? b", {{adInteger, 0, Variant(1)}}), HasSubstr("2 parameters"));
  EXPECT_THAT(refused("select 1 a", {{adInteger, 0, Variant(1)}}), HasSubstr("0 parameters"));
}

TEST_F(Batch, ShowsTheEnginesStatements) {
  run(*connection_, "declare @a int set @a = 5 select @a b");
  const auto native = connection_->lastNativeSql();
  EXPECT_EQ(std::count(native.begin(), native.end(), '\n'), 2);
  run(*connection_, "set nocount on");
  EXPECT_EQ(connection_->lastNativeSql(), "");
}

TEST_F(Batch, TemporaryTablesBelongToTheirConnection) {
  const auto folder = testing::TempDir();
  const auto dsn = "Data Source=" + folder + "/temporary-tables.db;Mode=Create";
  {
    const auto one = connect(dsn);
    const auto two = connect(dsn);
    run(*one, "create table #t(a int); insert into #t values(1)");
    EXPECT_THAT(failure(*two, "select * from #t"), HasSubstr("208"));
    run(*two, "create table #t(b varchar(5)); insert into #t values('x')");
    EXPECT_EQ(query(*one, "select * from #T"), (Texts{{"1"}}));
    EXPECT_EQ(query(*two, "select * from #t"), (Texts{{"x"}}));
  }
  EXPECT_THAT(failure(*connect(dsn), "select * from #t"), HasSubstr("208"));
  std::filesystem::remove(folder + "/temporary-tables.db");
}

TEST_F(Batch, FilesAreOutOfReach) {
  EXPECT_THAT(failure(*connection_, "select * from '/etc/passwd'"), Not(testing::IsEmpty()));
  EXPECT_THAT(failure(*connection_, "select * from [/etc/passwd]"), HasSubstr("208"));
}

TEST_F(Batch, DecimalFunctionsAreThereWhenNeeded) {
  run(*connection_,
      "create table #t(a decimal(28,10), b decimal(28,10));"
      "insert into #t values(10, 3); insert into #t values(null, 1)");
  const auto quotients = query(*connection_, "select a/b q from #t order by a");
  EXPECT_EQ(quotients[0][0], "NULL");
  EXPECT_THAT(quotients[1][0], testing::StartsWith("3.333333"));
  run(*connection_, "begin tran select a*b*a p from #t rollback");
  EXPECT_EQ(query(*connection_, "select a*b*a p from #t order by a"), (Texts{{"NULL"}, {"300"}}));
}

}  // namespace

}  // namespace velmora::ado::embedded::test
