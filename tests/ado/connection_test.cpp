#include "velmora/ado/connection.h"

#include "ado/expect_error.h"
#include "ado/fake_provider.h"
#include "platform/ado/odbc/odbc_provider.h"
#include "velmora/ado/command.h"

namespace velmora::ado {
namespace {

using namespace com::error;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class ConnectionTest : public testing::Test {
 protected:
  ConnectionTest() { registerFake("Fake", database); }

  ConnectionRef opened() {
    auto connection = com::make<Connection>();
    connection->Open("Provider=Fake;Data Source=x");
    return connection;
  }

  FakeDatabase database;
};

TEST_F(ConnectionTest, OpensAndClosesWithItsProvider) {
  auto connection = com::make<Connection>();
  EXPECT_EQ(connection->State(), adStateClosed);
  expectError(kAdoObjectClosed, "closed", [&] { connection->Execute("select 1"); });
  connection->Open("provider=FAKE;Data Source=x");
  EXPECT_EQ(connection->State(), adStateOpen);
  EXPECT_EQ(database.settings.value("Data Source"), "x");
  expectError(kAdoObjectOpen, "is open", [&] { connection->Open("Provider=Fake"); });
  connection->Close();
  connection->Close();
  EXPECT_EQ(connection->State(), adStateClosed);
  EXPECT_EQ(database.open, 0);
  connection->Open("Provider=Fake");
  connection = nullptr;
  EXPECT_EQ(database.open, 0);
}

TEST_F(ConnectionTest, CompletesUserAndPassword) {
  auto connection = com::make<Connection>();
  connection->Open("Provider=Fake;UID=old", "clerk", "s;1");
  EXPECT_EQ(database.settings.toDisplay(), "Provider=Fake;UID=clerk;Password=***");
  EXPECT_EQ(database.settings.value("Password"), "s;1");
}

TEST_F(ConnectionTest, FindsTheProviderOfASqlServer) {
  FakeDatabase odbc;
  registerFake("MSDASQL", odbc);
  for (const char* text :
       {"Provider=SQLOLEDB.1;Data Source=srv;Initial Catalog=AIS", "provider=sqloledb",
        "Provider=SQLNCLI11.1", "Provider=MSOLEDBSQL19", "Provider=MSDASQL.1;DSN=a",
        "Provider=MSDASQL", "Driver={ODBC Driver 17 for SQL Server};Server=a", "DSN=a"}) {
    auto connection = com::make<Connection>();
    EXPECT_NO_THROW(connection->Open(text)) << text;
    EXPECT_EQ(odbc.open, 1) << text;
  }
  registerFake("SQLOLEDB.1", database);  // a name as it stands goes before its family
  opened();
  auto connection = com::make<Connection>();
  connection->Open("Provider=SQLOLEDB.1");
  EXPECT_EQ(database.open, 1);
  odbc::registerProvider();  // the other tests of this program shall find it
}

TEST_F(ConnectionTest, NamesAProviderThatThereIsNot) {
  auto connection = com::make<Connection>();
  const auto open = [&](const char* text) { connection->Open(text); };
  expectError(kAdoProviderNotFound, "'Nowhere.2' cannot be found; known providers: ", [&] {
    open("Provider=Nowhere.2");
  });
  expectError(kAdoProviderNotFound, "Fake", [&] { open("Provider=Nowhere.2"); });
  expectError(kAdoProviderNotFound, "expected Provider=NAME", [&] { open("Data Source=x"); });
  expectError(kAdoProviderNotFound, "expected Provider=NAME", [&] { open(""); });
}

TEST_F(ConnectionTest, LetsNoPasswordIntoAMessage) {
  struct Case {
    const char* text;
    const char* password;
  };
  database.refusal = "login failed: %1; secret; se\"\"cret";
  for (const Case& c : {
           Case{"Provider=Fake;Password=secret", ""},
           Case{"Provider=Fake;PWD=se;UID=cret", "secret"},
           Case{"Provider=Fake", "secret"},
           Case{"Provider=Fake;Password={se\"cret}", "secret"},
           Case{"Provider=Fake;Extended Properties='DSN=a;PWD=secret'", ""},
       }) {
    auto connection = com::make<Connection>();
    try {
      connection->Open(c.text, "", c.password);
      ADD_FAILURE() << "opened " << c.text;
    } catch (const com::Error& error) {
      EXPECT_EQ(error.number(), -17);
      EXPECT_EQ(error.source(), "Fake");
      EXPECT_THAT(error.description(), HasSubstr("login failed: Provider=Fake"));
      EXPECT_THAT(error.description(), Not(HasSubstr("secret"))) << c.text;
    }
    EXPECT_EQ(connection->State(), adStateClosed);
  }
  RegisterProvider("Broken", [](const ConnectionString&) -> std::unique_ptr<ProviderConnection> {
    throw std::runtime_error("no room for secret");
  });
  expectError(kProviderConnect, "no room for ***",
              [] { com::make<Connection>()->Open("Provider=Broken;Password=secret"); });
}

TEST_F(ConnectionTest, AnswersTheFirstRowsetAndTheRestBehindIt) {
  database.answers["batch"] = {changed(3), rowsOf("A", {1, 2}), changed(5), rowsOf("B", {}),
                               rowsOf("C", {7})};
  auto connection = opened();
  connection->CommandTimeout(0);
  std::int64_t affected = 0;
  auto rs = connection->Execute("batch", &affected);
  EXPECT_EQ(affected, 5);
  EXPECT_EQ(database.timeout, 0);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->ActiveConnection(), connection);

  const auto command = com::make<Command>();
  EXPECT_EQ(command->CommandTimeout(), 30);
  command->ActiveConnection(connection);
  command->CommandText("batch");
  command->Execute();
  EXPECT_EQ(database.timeout, 0) << "the connection's, until it has its own";
  command->CommandTimeout(7);
  command->Execute();
  EXPECT_EQ(database.timeout, 7);
  expectError(kAdoInvalidArgument, "cannot be -1", [&] { command->CommandTimeout(-1); });
  expectError(kAdoInvalidArgument, "cannot be -1", [&] { connection->CommandTimeout(-1); });

  auto second = rs->NextRecordset();
  ASSERT_TRUE(second);
  EXPECT_TRUE(second->EOF_());
  EXPECT_EQ(second->Fields()(0).Name(), "B");
  auto third = second->NextRecordset();
  ASSERT_TRUE(third);
  EXPECT_EQ(third->Fields()("C").Value(), Variant(7));
  EXPECT_FALSE(third->NextRecordset());
  EXPECT_FALSE(rs->NextRecordset());
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(ConnectionTest, AnswersAClosedRecordsetWithoutRows) {
  database.answers = {{"set nocount on ", {}}, {"update", {changed(4)}}};
  auto connection = opened();
  std::int64_t affected = 0;
  EXPECT_EQ(connection->Execute("set nocount on ", &affected)->State(), adStateClosed);
  EXPECT_EQ(affected, -1);
  connection->Execute("update", &affected);
  EXPECT_EQ(affected, 4);
  expectError(kProvider, "cannot run nonsense", [&] { connection->Execute("nonsense"); });
  EXPECT_NO_THROW(connection->Execute("update"));
}

TEST_F(ConnectionTest, LivesAsLongAsAConnectedRecordset) {
  database.answers["q"] = {rowsOf("A", {1})};
  auto rs = opened()->Execute("q");
  EXPECT_EQ(database.open, 1);
  rs->ActiveConnection(nullptr);
  EXPECT_EQ(database.open, 0);
  EXPECT_EQ(rs->Fields()("A").Value(), Variant(1));
  rs->Filter("A = 1");
  EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(ConnectionTest, OpensARecordsetWithAQuery) {
  database.answers = {{"q", {rowsOf("A", {1})}}, {"update", {changed(1)}}};
  auto connection = opened();
  auto rs = com::make<Recordset>();
  rs->CursorLocation(adUseClient);
  rs->Open("update", connection);
  EXPECT_EQ(rs->State(), adStateClosed);
  rs->Open("q", connection, adOpenStatic, adLockReadOnly);
  EXPECT_EQ(rs->State(), adStateOpen);
  EXPECT_EQ(rs->CursorType(), adOpenStatic);
  EXPECT_EQ(rs->ActiveConnection(), connection);
  expectError(kAdoObjectOpen, "is open", [&] { rs->Open("q", connection); });
  rs->Close();
  EXPECT_FALSE(rs->ActiveConnection());
  expectError(kProvider, "cannot run", [&] { rs->Open("nonsense", connection); });
  expectError(kAdoObjectClosed, "got none", [&] { rs->Open("q", nullptr); });
}

TEST_F(ConnectionTest, PassesParametersInTheirDeclaredType) {
  database.answers["q"] = {rowsOf("A", {1})};
  auto command = com::make<Command>();
  command->CommandText("q");
  expectError(kAdoObjectClosed, "no connection", [&] { command->Execute(); });
  command->ActiveConnection(com::make<Connection>());
  expectError(kAdoObjectClosed, "closed", [&] { command->Execute(); });
  command->ActiveConnection(opened());
  command->AppendParameter(adInteger, 0, "12");
  command->AppendParameter(adVarChar, 3, "ARP");
  command->AppendParameter(adVarChar, 3, collections::Null{});
  EXPECT_EQ(command->Execute()->RecordCount(), 1);
  ASSERT_EQ(database.parameters.size(), 3U);
  EXPECT_EQ(database.parameters[0].value, Variant(12));
  EXPECT_EQ(database.parameters[1].value, Variant("ARP"));
  EXPECT_TRUE(database.parameters[2].value.isNull());

  command->AppendParameter(adVarChar, 3, "four");
  expectError(kAdoDataConversion, "'parameter 4' (adVarChar): 'four' has 4 characters",
              [&] { command->Execute(); });
  EXPECT_THAT(database.batches, ElementsAre("q"));  // the refused one never reached it
}

TEST_F(ConnectionTest, RefusesBulkLoadWhereTheProviderHasNone) {
  const std::vector<std::string> columns{"FID"};
  expectError(kAdoNotSupported, "'t_rp_contact'",
              [&] { opened()->provider().bulkInsert("t_rp_contact", columns); });
}

}  // namespace
}  // namespace velmora::ado
