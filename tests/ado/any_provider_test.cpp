#include <chrono>
#include <cstdlib>
#include <memory>
#include <stop_token>
#include <thread>

#include "ado/expect_error.h"
#include "sqlite_database.h"
#include "velmora/ado/command.h"
#include "velmora/com/cancellation.h"

// What a connection does whatever is behind it: the embedded database, a database behind an
// ODBC driver, and the server that VELMORA_TEST_DSN (an ADO connection string) names. Only
// work tables are made there. SQLite knows no "#" tables: its temporary tables stand in.

namespace velmora::ado {
namespace {

using namespace com::error;
using collections::Date;

struct Database {
  std::string name;
  std::string dsn;
  std::string createWorkTable = "create table ";
  std::shared_ptr<SqliteDatabase> file = nullptr;
};

std::vector<Database> databases() {
  const auto sqlite = std::make_shared<SqliteDatabase>();
  std::vector<Database> all{
      {"Embedded", "Provider=Velmora.Embedded;Data Source=:memory:;Mode=ReadWrite"},
      {"Sqlite", sqlite->dsn(), "create temporary table ", sqlite}};
  if (const char* dsn = std::getenv("VELMORA_TEST_DSN")) all.push_back({"Server", dsn});
  return all;
}

class AnyProvider : public testing::TestWithParam<Database> {
 protected:
  AnyProvider() : connection(opened()) {
    connection->Execute(GetParam().createWorkTable +
                        "[#work] (FID int not null, FLevel smallint, FCount bigint, FDate "
                        "datetime, FNumber varchar(80), FName nvarchar(255))");
  }

  ConnectionRef opened() const {
    auto made = com::make<Connection>();
    made->Open(GetParam().dsn);
    made->CursorLocation(adUseClient);
    made->CommandTimeout(0);
    return made;
  }

  void insert(int id, const Variant& name) {
    const auto command = com::make<Command>();
    command->ActiveConnection(connection);
    command->CommandText("insert into [#work] (FID, FName) values (?, ?)");
    command->AppendParameter(adInteger, 0, id);
    command->AppendParameter(adVarWChar, 255, name);
    command->Execute();
  }

  ConnectionRef connection;
};

TEST_P(AnyProvider, ReadsBackWhatWasWritten) {
  const auto command = com::make<Command>();
  command->ActiveConnection(connection);
  command->CommandText("insert into [#work] values (?, ?, ?, ?, ?, ?)");
  command->AppendParameter(adInteger, 0, -7);
  command->AppendParameter(adSmallInt, 0, 32767);
  command->AppendParameter(adBigInt, 0, std::int64_t{9007199254740993});
  command->AppendParameter(adDBTimeStamp, 0, "2009-03-01 10:20:30");
  command->AppendParameter(adVarChar, 30, "C'001");
  command->AppendParameter(adVarWChar, 255, "应收账款 é");
  command->Execute();
  insert(8, collections::Null{});

  const auto rs = connection->Execute("select * from [#work] order by FID");
  ASSERT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields()("fid").Type(), adInteger);
  EXPECT_EQ(rs->Fields()("FID").Value(), Variant(-7));
  EXPECT_EQ(rs->Fields()("FLevel").Value(), Variant(std::int16_t{32767}));
  EXPECT_EQ(rs->Fields()("FCount").Value(), Variant(std::int64_t{9007199254740993}));
  EXPECT_EQ(rs->Fields()("FDate").Value(), Variant(*Date::tryParse("2009-03-01 10:20:30")));
  EXPECT_EQ(rs->Fields()("FNumber").Value(), Variant("C'001"));
  EXPECT_EQ(rs->Fields()("FNumber").DefinedSize(), 80);
  EXPECT_EQ(rs->Fields()("FName").Value(), Variant("应收账款 é"));
  rs->MoveNext();
  for (const char* column : {"FLevel", "FCount", "FDate", "FNumber", "FName"})
    EXPECT_TRUE(rs->Fields()(column).Value().isNull()) << column;
}

TEST_P(AnyProvider, LetsARecordsetOutliveItsConnection) {
  for (int id = 1; id <= 3; ++id) insert(id, "n" + std::to_string(id));
  auto rs = com::make<Recordset>();
  rs->CursorLocation(adUseClient);
  rs->Open("select FID, FName from [#work] order by FID", connection, adOpenStatic, adLockReadOnly);
  rs->ActiveConnection(nullptr);
  connection->Close();
  EXPECT_EQ(rs->RecordCount(), 3);
  rs->Filter("FID > 1 and FName <> 'n3'");
  EXPECT_EQ(rs->GetValue(1), Variant("n2"));
}

TEST_P(AnyProvider, AnswersEmptyRowsWithTheirFields) {
  const auto rs = connection->Execute("select FID, FName from [#work] where FID > 5");
  EXPECT_EQ(rs->State(), adStateOpen);
  EXPECT_TRUE(rs->EOF_());
  EXPECT_EQ(rs->Fields()(1).Name(), "FName");
}

TEST_P(AnyProvider, CountsChangedRows) {
  for (int id = 1; id <= 3; ++id) insert(id, "n");
  std::int64_t changed = 0;
  const auto rs = connection->Execute("update [#work] set FName = 'm' where FID > 1", &changed);
  EXPECT_EQ(rs->State(), adStateClosed);
  EXPECT_EQ(changed, 2);
  connection->Execute("delete from [#work] where FID > 7", &changed);
  EXPECT_EQ(changed, 0);
}

TEST_P(AnyProvider, KeepsWorkTablesToTheirConnection) {
  insert(1, "mine");
  const auto other = opened();
  EXPECT_NE(errorOf([&] { other->Execute("select * from [#work]"); }).description(), "");
  EXPECT_EQ(connection->Execute("select FName from [#work]")->GetValue(0), Variant("mine"));
  connection->Close();
  connection = opened();
  EXPECT_NE(errorOf([&] { connection->Execute("select * from [#work]"); }).description(), "");
}

TEST_P(AnyProvider, SurvivesAFailedBatch) {
  expectError(kProvider, "nowhere", [&] { connection->Execute("select * from nowhere"); });
  expectError(kProvider, "", [&] { connection->Execute("this is no statement"); });
  expectError(kProvider, "",
              [&] { connection->Execute("insert into [#work] (FName) values ('no FID')"); });
  insert(1, "after");
  EXPECT_EQ(connection->Execute("select FName from [#work]")->RecordCount(), 1);
}

/// The error of a batch that takes hours unless it is stopped.
com::Error errorOfLongBatch(Connection& connection) {
  std::string tables = "[#work] t0";
  for (int i = 1; i < 14; ++i) tables += ", [#work] t" + std::to_string(i);
  return errorOf([&] { connection.Execute("select sum(t0.FID) from " + tables); });
}

TEST_P(AnyProvider, StopsABatchAndStaysUsable) {
  for (int id = 1; id <= 10; ++id) insert(id, "n");
  connection->CommandTimeout(1);
  EXPECT_EQ(errorOfLongBatch(*connection).number(), kAdoTimeout);

  connection->CommandTimeout(0);
  std::jthread canceller([this](const std::stop_token& done) {
    for (; !done.stop_requested(); std::this_thread::sleep_for(std::chrono::milliseconds(100)))
      connection->Cancel();
  });
  EXPECT_EQ(errorOfLongBatch(*connection).number(), kAdoOperationCancelled);
  canceller.request_stop();
  canceller.join();

  {
    std::stop_source stop;
    const com::CancellationScope scope(stop.get_token());
    std::jthread asking([&stop] { stop.request_stop(); });
    EXPECT_EQ(errorOfLongBatch(*connection).number(), kAdoOperationCancelled);
    asking.join();
    EXPECT_EQ(errorOf([&] { connection->Execute("select 1"); }).number(), kAdoOperationCancelled);
  }
  connection->Cancel();
  EXPECT_EQ(connection->Execute("select FID from [#work]")->RecordCount(), 10);
}

INSTANTIATE_TEST_SUITE_P(Databases, AnyProvider, testing::ValuesIn(databases()),
                         [](const auto& param) { return param.param.name; });

}  // namespace
}  // namespace velmora::ado
