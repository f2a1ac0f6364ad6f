#include <gmock/gmock.h>

#include "ado/expect_error.h"
#include "velmora/ado/command.h"

// Batches of several results, and what can go wrong in them, against a driver that
// answers as told (see driver/scripted_driver.cpp).

namespace velmora::ado {
namespace {

using namespace com::error;
using collections::Decimal;
using testing::HasSubstr;
using testing::Not;

const std::string kDriver = "Driver={" VELMORA_TEST_ODBC_DRIVER "};";

class OdbcBatch : public testing::Test {
 protected:
  OdbcBatch() { connection->Open(kDriver + "Database=AIS"); }

  std::vector<Variant> column(const std::string& batch) {
    std::vector<Variant> values;
    for (auto rs = connection->Execute(batch); !rs->EOF_(); rs->MoveNext())
      values.push_back(rs->GetValue(0));
    return values;
  }

  ConnectionRef connection = com::make<Connection>();
};

TEST_F(OdbcBatch, AnswersEveryResult) {
  std::int64_t changed = 0;
  auto rs = connection->Execute(
      "count 3\nrows int 1 NULL\ncount -1\nrows text a\ncount 5\nrows int", &changed);
  EXPECT_EQ(changed, 5);
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->MoveNext();
  EXPECT_TRUE(rs->GetValue(0).isNull());
  rs = rs->NextRecordset();
  EXPECT_EQ(rs->GetValue(0), Variant("a"));
  rs = rs->NextRecordset();
  EXPECT_TRUE(rs->EOF_());
  EXPECT_FALSE(rs->NextRecordset());
  EXPECT_EQ(connection->Execute(" \r\n")->State(), adStateClosed);
}

TEST_F(OdbcBatch, ReadsDecimalsDigitByDigit) {
  const auto rs =
      connection->Execute("rows decimal(38,4) 1234567890123456789012345678901234.5678 -.5 7 NULL");
  const Field& field = rs->Fields()(0);
  EXPECT_EQ(field.Type(), adNumeric);
  EXPECT_EQ(field.Precision(), 38);
  EXPECT_EQ(field.NumericScale(), 4);
  EXPECT_EQ(rs->GetValue(0).toDecimal().toString(), "1234567890123456789012345678901234.5678");
  rs->MoveNext();
  EXPECT_EQ(rs->GetValue(0).toDecimal().toString(), "-0.5000");
  rs->MoveNext();
  EXPECT_EQ(rs->GetValue(0).toDecimal().toString(), "7.0000");
  rs->MoveNext();
  EXPECT_TRUE(rs->GetValue(0).isNull());
  expectError(kProvider, "Column 'C': '1E99' is no number",
              [&] { connection->Execute("rows decimal(10,2) 1E99"); });
}

TEST_F(OdbcBatch, ReadsTextsOfAnyLength) {
  for (const std::size_t length : {1U, 2046U, 2047U, 2048U, 2049U, 4094U, 100'000U}) {
    const std::string text(length, 'x');
    EXPECT_EQ(column("rows text " + text).at(0).text(), text) << length;
  }
  expectError(kProvider, "Column 'C': 'a\uFFFD!' is no valid Unicode text",
              [&] { connection->Execute("rows text ok SURROGATE"); });
}

TEST_F(OdbcBatch, CollectsTheErrorsOfAllStatements) {
  const com::Error error = errorOf([&] {
    connection->Execute(
        "rows int 1\n"
        "error 42S02 208 Invalid object name 'nowhere'.\n"
        "+ 42000 8180 Statement could not be prepared.\n"
        "rows int 2\n"
        "broken-rows a 22012 8134 Divide by zero error encountered.\n"
        "error 42S02 208 Invalid object name 'nowhere'.\n"
        "error 23000 2627 Violation of PRIMARY KEY constraint.");
  });
  EXPECT_EQ(error.number(), kProvider);
  EXPECT_EQ(error.source(), "Velmora.ODBC");
  EXPECT_EQ(error.description(),
            "208: Invalid object name 'nowhere'. (SQLSTATE 42S02)\n"
            "8180: Statement could not be prepared. (SQLSTATE 42000)\n"
            "8134: Divide by zero error encountered. (SQLSTATE 22012)\n"
            "2627: Violation of PRIMARY KEY constraint. (SQLSTATE 23000)");
  EXPECT_EQ(column("rows int 4").at(0), Variant(4));
}

TEST_F(OdbcBatch, LosesAConnectionForItsOwnCallsOnly) {
  auto other = com::make<Connection>();
  other->Open(kDriver);
  expectError(kProviderConnect, "20004: Read from the server failed (SQLSTATE 08S01)", [&] {
    connection->Execute("rows int 1\nerror 08S01 20004 Read from the server failed\nrows int 2");
  });
  expectError(kProviderConnect, "20006: Write to the server failed",
              [&] { connection->Execute("rows int 1"); });
  EXPECT_EQ(other->Execute("rows int 1")->GetValue(0), Variant(1));
  expectError(kProviderConnect, "20017: Unexpected EOF from the server (SQLSTATE 01000)",
              [&] { other->Execute("error 01000 20017 Unexpected EOF from the server"); });
  connection->Close();
  connection->Open(kDriver);
  EXPECT_EQ(column("rows int 1").at(0), Variant(1));
}

TEST_F(OdbcBatch, BindsParametersUnderTheirType) {
  const auto command = com::make<Command>();
  command->ActiveConnection(connection);
  command->CommandText("parameters");
  command->AppendParameter(adVarChar, 30, "ARP");
  command->AppendParameter(adVarWChar, 0, "凭证");
  command->AppendParameter(adVarChar, 30, collections::Null{});
  command->AppendParameter(adInteger, 0, "-12");
  command->AppendParameter(adNumeric, 0, Decimal::parse("12345678901234567890.120"));
  command->AppendParameter(adBoolean, 0, true);
  command->AppendParameter(adDBTimeStamp, 0, "2009-03-01");
  std::vector<std::string> bound;
  for (const auto rs = command->Execute(); !rs->EOF_(); rs->MoveNext())
    bound.emplace_back(rs->GetValue(0).text());
  EXPECT_THAT(bound,
              testing::ElementsAre("12(30,0)=ARP", testing::StartsWith("-9(2,0)="), "12(30,0)=NULL",
                                   "4(10,0)=-12", "3(38,3)=12345678901234567890.120",
                                   "-7(1,0)=of C type -7", "93(23,3)=of C type 93"));
}

TEST_F(OdbcBatch, SetsTheTimeOutsAskedFor) {
  connection->Close();
  connection->Open("Provider=MSDASQL;Extended Properties='" + kDriver +
                   "';Initial Catalog=AIS;Connect Timeout=9");
  EXPECT_THAT(column("settings"), testing::ElementsAre(Variant(kDriver + "Database=AIS;"),
                                                       Variant("9"), Variant("30")));
  connection->CommandTimeout(0);
  EXPECT_EQ(column("settings").at(2), Variant("0"));
}

TEST_F(OdbcBatch, IsOverAtItsTimeLimit) {
  connection->CommandTimeout(1);
  for (const char* batch :
       {"hang", "rows int 1\nhang\nrows int 2", "error HYT00 0 [Driver]Query timeout expired"})
    expectError(kAdoTimeout, "Timeout expired: the batch ran longer than its CommandTimeout of 1",
                [&] { connection->Execute(batch); });
  expectError(kProvider, "1222: Lock request",
              [&] { connection->Execute("error HYT00 1222 Lock request time out exceeded"); });
  EXPECT_EQ(column("rows int 1").at(0), Variant(1));
}

TEST_F(OdbcBatch, RefusesALoginWithoutThePassword) {
  connection->Close();
  const com::Error error =
      errorOf([&] { connection->Open(kDriver + "Refuse=yes;UID=clerk;PWD={topsecret}"); });
  EXPECT_EQ(error.number(), kProviderConnect);
  EXPECT_THAT(error.description(), HasSubstr("18456: Login failed for"));
  EXPECT_THAT(error.description(), HasSubstr("UID=clerk;PWD=***"));
  EXPECT_THAT(error.description(), HasSubstr("0: Unable to connect (SQLSTATE 08001)"));
  EXPECT_EQ(connection->State(), adStateClosed);
}

/// Real drivers and the driver manager, without a server.
TEST(OdbcConnection, SaysWhyItCannotBeMade) {
  struct Case {
    const char* text;
    const char* reason;
  };
  for (const Case& c : {
           Case{"Provider=SQLOLEDB.1;Data Source=127.0.0.1,1;User ID=sa;Password=topsecret;"
                "Connect Timeout=3",
                "20009: [FreeTDS][SQL Server]Unable to connect"},
           Case{"Driver={No such driver};PWD=topsecret", "'No such driver' : file not found"},
           Case{"DSN=no_such_source;PWD=topsecret", "(SQLSTATE IM002)"},
           Case{"Provider=SQLNCLI11;Data Source=srv;Integrated Security=SSPI", "Windows identity"},
       }) {
    const com::Error error = errorOf([&] { com::make<Connection>()->Open(c.text); });
    EXPECT_EQ(error.number(), kProviderConnect) << c.text;
    EXPECT_EQ(error.source(), "Velmora.ODBC");
    EXPECT_THAT(error.description(), HasSubstr(c.reason));
    EXPECT_THAT(error.description(), Not(HasSubstr("topsecret")));
  }
}

}  // namespace
}  // namespace velmora::ado
