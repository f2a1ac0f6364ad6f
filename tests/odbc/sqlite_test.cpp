#include <gmock/gmock.h>

#include "ado/expect_error.h"
#include "sqlite_database.h"
#include "velmora/ado/command.h"

// The provider with a real driver and a real database. SQLite has no decimals of its own;
// those are tested in batch_test.cpp.

namespace velmora::ado {
namespace {

using namespace com::error;
using collections::Date;

class OdbcSqlite : public testing::Test {
 protected:
  OdbcSqlite() { connection->Open(database.dsn()); }

  SqliteDatabase database;
  ConnectionRef connection = com::make<Connection>();
};

TEST_F(OdbcSqlite, ReadsEveryTypeOfTheSchema) {
  connection->Execute(
      "create table t (FID int, FLevel smallint, FSort tinyint, FBig bigint, FDetail bit, FRate "
      "float, FDate datetime, FDay date, FNumber varchar(80), FName nvarchar(255), FNote text)");
  connection->Execute(
      "insert into t values (-2147483648, -3, 255, 9007199254740993, 1, 0.1, '2009-03-01 "
      "10:20:30.25', '2009-12-31', 'C001', '应收账款 \U0001F4B0', 'x')");
  connection->Execute("insert into t (FID) values (2)");
  const auto rs = connection->Execute("select * from t order by FID");
  struct Expected {
    DataTypeEnum type;
    std::int64_t size;
    Variant value;
  };
  const std::vector<Expected> expected{
      {adInteger, 4, -2147483647 - 1},
      {adSmallInt, 2, std::int16_t{-3}},
      {adUnsignedTinyInt, 1, std::int16_t{255}},
      {adBigInt, 8, std::int64_t{9007199254740993}},
      {adBoolean, 2, true},
      {adDouble, 8, 0.1},
      {adDBTimeStamp, 16, Date::fromParts({2009, 3, 1, 10, 20, 30, 250'000})},
      {adDBDate, 6, Date::ymd(2009, 12, 31)},
      {adVarChar, 80, "C001"},
      {adVarChar, 255, "应收账款 \U0001F4B0"},
      {adLongVarChar, -1, "x"},
  };
  ASSERT_EQ(rs->Fields().Count(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Field& field = rs->Fields()(i);
    EXPECT_EQ(field.Type(), expected[i].type) << field.Name();
    EXPECT_EQ(field.DefinedSize(), expected[i].size) << field.Name();
    EXPECT_EQ(rs->GetValue(i), expected[i].value) << field.Name();
  }
  rs->MoveNext();
  for (std::size_t i = 1; i < expected.size(); ++i) EXPECT_TRUE(rs->GetValue(i).isNull());
}

TEST_F(OdbcSqlite, TakesParameters) {
  connection->Execute("create table t (FID int, FNumber varchar(80), FDate datetime, FRate float)");
  const auto insert = com::make<Command>();
  insert->ActiveConnection(connection);
  insert->CommandText("insert into t values (?, ?, ?, ?)");
  insert->AppendParameter(adInteger, 0, 7);
  insert->AppendParameter(adVarChar, 30, "凭证'1");
  insert->AppendParameter(adDBTimeStamp, 0, "2009-03-01 12:00:01");
  insert->AppendParameter(adDouble, 0, collections::Null{});
  insert->Execute();
  const auto find = com::make<Command>();
  find->ActiveConnection(connection);
  find->CommandText("select * from t where FNumber = ?");
  find->AppendParameter(adVarChar, 30, "凭证'1");
  const auto rs = find->Execute();
  ASSERT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->GetValue(0), Variant(7));
  EXPECT_EQ(rs->GetValue(2), Variant(*Date::tryParse("2009-03-01 12:00:01")));
  EXPECT_TRUE(rs->GetValue(3).isNull());
  expectError(kProvider, "no UTF-8", [&] { connection->Execute("select '\xFF'"); });
}

TEST_F(OdbcSqlite, KeepsLargeTextsAndManyRows) {
  connection->Execute("create table t (FID int, FNote text)");
  std::string note;
  while (note.size() < 300'000) note += "往来科目 control account ";
  const auto insert = com::make<Command>();
  insert->ActiveConnection(connection);
  insert->CommandText("insert into t values (1, ?)");
  insert->AppendParameter(adLongVarWChar, 0, note);
  insert->Execute();
  EXPECT_EQ(connection->Execute("select FNote from t")->GetValue(0), Variant(note));
  const auto rs = connection->Execute(
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 20000) "
      "select cast(i as int) as FID, 'row ' || i as FName from n");
  EXPECT_EQ(rs->RecordCount(), 20'000);
}

TEST_F(OdbcSqlite, SurvivesAFailedBatch) {
  expectError(kProvider, "1: [SQLite]no such table: nowhere (1) (SQLSTATE HY000)",
              [&] { connection->Execute("select * from nowhere"); });
  EXPECT_EQ(connection->Execute("select 'still here' as 文本")->Fields()("文本").Value(),
            Variant("still here"));
}

}  // namespace
}  // namespace velmora::ado
