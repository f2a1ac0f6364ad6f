// The set-up of a call, its connections and the border at which failures end.

#include <gmock/gmock.h>

#include "error_of.h"
#include "frame/call/call_setup.h"
#include "frame/call/drop_temp_table.h"
#include "frame/call/loader_slot.h"
#include "frame/call/operation.h"
#include "frame/get_data.h"
#include "late_bound.h"
#include "scripted_database.h"

namespace velmora {
namespace {

using testing::ElementsAre;

TEST(CDataSource, OpensDistinctConnectionsWithTheirIsolation) {
  ScriptedDatabase database;
  CallSetup call;
  call.PrepareDataSource(kScriptedDsn);
  const auto first = call.dataSource().UnCommittedConnection();
  const auto second = call.dataSource().UnCommittedConnection();
  const auto settings = call.dataSource().Connection();
  EXPECT_NE(first, second);
  EXPECT_EQ(database.open, 3);
  EXPECT_THAT(database.statements, ElementsAre("SET TRANSACTION ISOLATION LEVEL READ UnCOMMITTED",
                                               "SET TRANSACTION ISOLATION LEVEL READ UnCOMMITTED",
                                               "SET TRANSACTION ISOLATION LEVEL READ COMMITTED"));
  for (const auto& connection : {first, second, settings}) {
    EXPECT_EQ(connection->CursorLocation(), ado::adUseClient);
    EXPECT_EQ(connection->CommandTimeout(), 0);
  }
}

TEST(CDataSource, FailsWithoutAConnectString) {
  CallSetup call;
  call.PrepareDataSource("LANGUAGE=EN");
  const auto error = errorOf([&] { call.dataSource().Connection(); });
  EXPECT_EQ(error.number(), com::error::kInvalidArgument);
  EXPECT_THAT(error.description(), testing::HasSubstr("ConnectString"));
}

TEST(CDataSource, UnloadsTheMessageLoaderAtItsEnd) {
  FakeLoader fake;
  const auto installed = fake.install();
  {
    CallSetup call;
    call.PrepareDataSource(kScriptedDsn);
    keepMessageLoader(com::CreateObject("Q8RESLOADER.Loader"));
  }
  EXPECT_EQ(fake.unloaded, 1);
  EXPECT_FALSE(messageLoader());

  keepMessageLoader(com::make<LateBound>());  // a loader that cannot unload
  unloadMessageLoader();
  EXPECT_FALSE(messageLoader());

  auto forgetful = com::make<LateBound>();
  forgetful->method("Unload", [](auto) {
    com::ClearErrorInfo();
    return collections::Variant();
  });
  keepMessageLoader(forgetful);
  com::SetErrorInfo({-1, "TirnBase", "no rules", "row access"});
  unloadMessageLoader();
  EXPECT_TRUE(com::GetErrorInfo());
  com::ClearErrorInfo();
}

TEST(CallSetup, NeedsAConnectionStringFirst) {
  CallSetup call;
  EXPECT_EQ(errorOf([&] { call.dataSource(); }).number(), com::error::kFailed);
}

TEST(DropTempTable, LeavesNoErrorBehind) {
  ScriptedDatabase database;
  database.fail("drop Table #Gone", "no such table");
  CallSetup call;
  call.PrepareDataSource(kScriptedDsn);
  const auto connection = call.dataSource().UnCommittedConnection();
  DropTempTable(*connection, "#Gone");
  EXPECT_EQ(database.statements.back(), "drop Table #Gone");
  EXPECT_FALSE(com::GetErrorInfo());
  connection->Close();
  com::SetErrorInfo({-1, "TirnBase", "no rules", "row access"});
  DropTempTable(*connection, "#Gone");
  EXPECT_EQ(com::GetErrorInfo()->place, "row access") << "the reason of the call stays";
  com::ClearErrorInfo();
}

TEST(RunOperation, VotesAndKeepsTheReason) {
  auto& context = com::GetObjectContext();
  context.reset();
  com::SetErrorInfo({-1, "earlier", "call", ""});
  EXPECT_EQ(runOperation(
                Voting::votes, [](Place&) { return 7; }, [] { return 0; }),
            7);
  EXPECT_EQ(context.vote(), com::Vote::complete);
  EXPECT_FALSE(com::GetErrorInfo()) << "the reason of an earlier call must not stay";

  const auto fails = [](Place& place) -> int {
    place = "没有审核的单据";
    throw com::Error(-5, "Provider", "table is missing");
  };
  EXPECT_EQ(runOperation(Voting::votes, fails, [] { return -1; }), -1);
  EXPECT_EQ(context.vote(), com::Vote::abort);
  const auto reason = com::GetErrorInfo();
  ASSERT_TRUE(reason);
  EXPECT_EQ(reason->number, -5);
  EXPECT_EQ(reason->source, "Provider");
  EXPECT_EQ(reason->description, "table is missing");
  EXPECT_EQ(reason->place, "没有审核的单据");

  context.reset();
  runOperation(Voting::abstains, fails, [] { return 0; });
  runOperation(
      Voting::abstains, [](Place&) { return 0; }, [] { return 0; });
  EXPECT_EQ(context.vote(), com::Vote::none);

  EXPECT_EQ(runOperation(
                Voting::votes, [](Place&) -> int { throw std::bad_alloc(); }, [] { return -2; }),
            -2)
      << "failures of any kind end here";
  EXPECT_TRUE(com::GetErrorInfo());
}

TEST(RunOperation, PassesOnTheReasonOfAnInnerOperation) {
  com::SetErrorInfo({-9, "Inner", "inner reason", "inner place"});
  Place place = "outer";
  const auto error = errorOf([&] { raiseReasonOf("GetCheckItemDict", place); });
  EXPECT_EQ(error.number(), -9);
  EXPECT_EQ(error.description(), "inner reason");
  EXPECT_EQ(place, "inner place");
  com::ClearErrorInfo();
  EXPECT_THAT(errorOf([&] { raiseReasonOf("GetCheckItemDict", place); }).description(),
              testing::HasSubstr("GetCheckItemDict"));
}

TEST(GetData, RunsTheQueryAsItIsAndDisconnects) {
  ScriptedDatabase database;
  database.answer("from t_item", rowset({"FItemID"}, {1, 2}));
  CallSetup call;
  com::GetObjectContext().reset();
  const auto rows = getData(call, kScriptedDsn, "select * from t_item -- as given ");
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_FALSE(rows->ActiveConnection());
  EXPECT_EQ(database.open, 0);
  EXPECT_THAT(database.statements,
              ElementsAre("SET TRANSACTION ISOLATION LEVEL READ UnCOMMITTED", "set nocount on ",
                          "select * from t_item -- as given "));
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::complete);

  const auto none = getData(call, kScriptedDsn, "select FNothing from t_account");
  EXPECT_TRUE(none->EOF_());
  EXPECT_EQ(none->Fields()(0).Name(), "FNothing");
  EXPECT_EQ(getData(call, kScriptedDsn, "update t_item set FItemID = 0")->State(),
            ado::adStateClosed);
}

TEST(GetData, LetsErrorsThroughAfterItsVote) {
  ScriptedDatabase database;
  database.fail("bad", "syntax error");
  CallSetup call;
  com::GetObjectContext().reset();
  const auto error = errorOf([&] { getData(call, kScriptedDsn, "bad"); });
  EXPECT_EQ(error.source(), "Scripted");
  EXPECT_EQ(error.description(), "syntax error");
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::complete);
  EXPECT_EQ(database.open, 0);
  EXPECT_EQ(errorOf([&] { getData(call, "A=1;a=2", "select 1"); }).number(),
            com::error::kDuplicateKey);
  EXPECT_NO_THROW(getData(call, kScriptedDsn, "select 1"));
}

TEST(GetData, KnowsNothingOfTheCallBefore) {
  ScriptedDatabase database;
  CallSetup call;
  getData(call, "LANGUAGE=EN;ConnectString={Provider=Scripted;Data Source=one}", "select 1");
  getData(call, "ConnectString={Provider=Scripted;Data Source=two}", "select 1");
  EXPECT_THAT(database.opened, ElementsAre("one", "two"));
  EXPECT_EQ(call.dataSource().parser().LanguageID(), "chs");
}

}  // namespace
}  // namespace velmora
