// The comparison with the ledger at the command line.

#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "cli/failure.h"
#include "demo_set.h"

namespace velmora::cli {
namespace {

using nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Where `json` departs from the schema that is published; empty when nowhere.
std::string schemaFaults(const ordered_json& json) {
  using valijson::adapters::NlohmannJsonAdapter;
  static const valijson::Schema& schema = []() -> const valijson::Schema& {
    static valijson::Schema read;
    std::ifstream file(VELMORA_SOURCE_DIR "/docs/explanation.schema.json");
    const auto text = nlohmann::json::parse(file);
    valijson::SchemaParser().populateSchema(NlohmannJsonAdapter(text), read);
    return read;
  }();
  const auto plain = nlohmann::json::parse(json.dump());
  valijson::ValidationResults faults;
  std::string told;
  if (valijson::Validator().validate(schema, NlohmannJsonAdapter(plain), &faults)) return told;
  for (valijson::ValidationResults::Error fault; faults.popError(fault);)
    told += fault.description + "\n";
  return told;
}

class Reconcile : public DemoSet {
 protected:
  static Finished run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "reconcile");
    arguments.insert(arguments.begin() + 2, {"--db", demo()});
    return runVelmora(arguments);
  }
};

TEST_F(Reconcile, ShowsBothLedgersSideBySide) {
  const auto agreeing = run({"period", "--year", "2009", "--period", "2", "--no-detail"});
  EXPECT_EQ(agreeing.status, kOk) << agreeing.err;
  EXPECT_THAT(agreeing.out, HasSubstr("3 rows compared, ledger and receivables agree."));
  const auto differing = run({"period", "--lang", "EN", "--only-differences"});
  EXPECT_EQ(differing.status, kBlocked);
  EXPECT_THAT(differing.out, AllOf(HasSubstr("1122(Subtotal)"), HasSubstr("(ledger minus "),
                                   Not(HasSubstr("NULL"))));
  const auto initial = run({"initial", "--side", "ap", "--currency", "USD"});
  EXPECT_EQ(initial.status, kOk) << initial.err;
  EXPECT_THAT(initial.out, AllOf(HasSubstr("Payables 2008-01, 美元"), HasSubstr("(currency)"),
                                 Not(HasSubstr("debit"))));
  EXPECT_EQ(run({"closing", "--year", "2009", "--period", "2", "--side", "ap"}).status, kOk);
  EXPECT_EQ(run({"closing", "--accounts=1122,-2203"}).status, kBlocked);
  const auto nobody = run({"closing", "--accounts", "1122", "--item-class", "3002"});
  EXPECT_EQ(nobody.status, kOk) << nobody.err;
  EXPECT_THAT(nobody.out,
              AllOf(testing::ContainsRegex("\\(合计\\) +balance +0\\.00 +0\\.00 +0\\.00"),
                    HasSubstr(": 0 rows compared, ledger and receivables agree.")));
}

TEST_F(Reconcile, WritesAllColumnsForPrograms) {
  const auto csv = run({"period", "--only-differences", "--format", "csv"});
  EXPECT_THAT(csv.out, testing::StartsWith("FID,FYear,FPeriod,FCurrencyID,FCurrencyName,"));
  EXPECT_THAT(csv.err, HasSubstr(" rows differ: "));
  const auto json =
      ordered_json::parse(run({"period", "--only-differences", "--format", "json"}).out);
  EXPECT_EQ(json.at("side"), "ar");
  EXPECT_EQ(json.at("accounts").front(), "1122");
  EXPECT_GT(json.at("compared").get<int>(), json.at("differing").get<int>());
  std::size_t ordinary = 0;
  for (const auto& row : json.at("rows"))
    if (row.at("FSumSort") == 0) ++ordinary;
  EXPECT_EQ(json.at("differing").get<std::size_t>(), ordinary);
  EXPECT_TRUE(json.at("rows").at(0).at("FDiffAmount").is_string()) << "amounts stay exact";
  EXPECT_EQ(csv.out, run({"period", "--only-differences", "--format", "csv"}).out);
}

TEST_F(Reconcile, ShowsTheStatements) {
  EXPECT_THAT(run({"closing", "--show-sql", "--no-detail"}).err,
              AllOf(HasSubstr("-- work tables\n"), HasSubstr("create table #AmtAcct"),
                    HasSubstr("-- general ledger\n")));
}

TEST_F(Reconcile, ExplainsEachRow) {
  const auto text = run({"period", "--explain", "--lang", "EN"});
  EXPECT_EQ(text.status, kBlocked) << text.err;
  EXPECT_THAT(
      text.out,
      AllOf(
          HasSubstr(
              "XSFP000042 has no voucher: make its voucher. [no-voucher; Document voucher check]"),
          HasSubstr("Voucher Journal-2 is in 2009-04, "), HasSubstr("2203 预收账款 C000009 "),
          Not(HasSubstr("unexplained"))));
  const auto json = ordered_json::parse(
      run({"period", "--explain", "--format", "json", "--currency", "USD", "--all"}).out);
  EXPECT_EQ(json.at("comparison").at("currency"), 3);
  EXPECT_EQ(json.at("rows").size(), json.at("comparison").at("compared").get<std::size_t>());
  std::size_t reasons = 0, counted = 0;
  for (const auto& row : json.at("rows")) reasons += row.at("reasons").size();
  for (const auto& total : json.at("totals")) counted += total.at("count").get<std::size_t>();
  EXPECT_EQ(reasons, counted);
  EXPECT_GT(reasons, 0U);
  EXPECT_THAT(schemaFaults(json), testing::IsEmpty());
  const auto csv = run({"closing", "--explain", "--format", "csv", "--side", "ap"});
  EXPECT_THAT(csv.out, testing::StartsWith("account,item,currency,reason,opening,debit,credit,"));
  const auto one = run({"period", "--explain", "--account", "1221", "--item", "C000007"});
  EXPECT_THAT(one.out, AllOf(HasSubstr("QTYS000007"), HasSubstr("1 of 1 rows differ")));
  EXPECT_THAT(run({"period", "--explain", "--only-reasons"}).out, Not(HasSubstr("XSFP")));
}

TEST_F(Reconcile, KeepsTheContractOfItsJson) {
  std::vector<std::string> arguments{"period", "--explain", "--format", "json"};
  for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
           {"--side", "ap", "--estimates", "--outsourcing"}, {"--only-reasons"}}) {
    auto all = arguments;
    all.insert(all.end(), more.begin(), more.end());
    EXPECT_THAT(schemaFaults(ordered_json::parse(run(all).out)), testing::IsEmpty());
  }
  EXPECT_THAT(schemaFaults({{"comparison", nullptr}}), Not(testing::IsEmpty()));
}

TEST_F(Reconcile, FindingsAndReasonsMeet) {
  for (const char* side : {"ar", "ap"}) {
    const auto check = runVelmora({"close-check", "--db", demo(), "--explain", "--side", side,
                                   "--format", "json", "--lang", "EN"});
    ASSERT_EQ(check.status, kBlocked) << check.err;
    const auto found = ordered_json::parse(check.out);
    // Only the two vouchers that are not posted are nobody's finding; the one keyed by hand
    // and the document of its voucher are, with the accounts.
    EXPECT_EQ(found.at("explained").at("otherReasons"), 3) << side;
    int moving = 0;
    for (const auto& finding : found.at("findings"))
      moving += finding.at("reasons").empty() ? 0 : 1;
    EXPECT_EQ(moving, side == std::string("ar") ? 26 : 25);
    const auto explained = ordered_json::parse(
        run({"period", "--explain", "--side", side, "--format", "json", "--lang", "EN"}).out);
    std::size_t unnamed = 0;
    for (const auto& row : explained.at("rows"))
      for (const auto& reason : row.at("reasons"))
        if (reason.at("checks").empty()) {
          ++unnamed;
          EXPECT_EQ(reason.at("reason"), "not-posted") << reason;
        }
    EXPECT_EQ(unnamed, 2U) << side;
  }
  const auto text = runVelmora(
      {"close-check", "--db", demo(), "--explain", "--lang", "EN", "--accounts", "1122,1221,2203"});
  EXPECT_THAT(text.out, AllOf(HasSubstr("XSFP000042]:no voucher generated\n"
                                        "        1122 C000005: debit -22603.06, balance "
                                        "-22603.06 [no-voucher]\n"),
                              HasSubstr("XSFP000041]:document not audited\n       moves nothing"),
                              HasSubstr("By what no check finds: "), HasSubstr("(2 reasons)")));
  EXPECT_THAT(
      runVelmora({"close-check", "--db", demo(), "--explain", "--year", "2009", "--period", "2"})
          .out,
      testing::StartsWith("Ledger and receivables agree, account by account.\n"));
  EXPECT_THAT(runVelmora({"close-check", "--db", demo(), "--explain", "--format", "csv"}).out,
              HasSubstr(",0.00,-22603.06,0.00,-22603.06,no-voucher\r\n"));
}

TEST_F(Reconcile, ExplainsWhatIsWrongWithTheQuestion) {
  const struct {
    std::vector<std::string> arguments;
    const char* told;
  } cases[] = {
      {{"period", "--item", "C000001"}, "--explain"},
      {{"closing", "--explain", "--account", "1122"}, "closing takes a side as a whole"},
      {{"period", "--explain", "--account", "1122", "--accounts", "1122"}, "not both"},
      {{"period", "--explain", "--item", "C1", "--items", "C1..C2"}, "not both"},
      {{"period", "--explain", "--item", "C000001", "--no-detail"}, "leave --no-detail out"},
      {{"period", "--explain", "--account", "9999"}, "\"9999\""},
      {{"period", "--explain", "--item", "C999999"}, "C999999"},
  };
  for (const auto& [arguments, told] : cases) {
    const auto refused = run(arguments);
    EXPECT_GE(refused.status, kUsage);
    EXPECT_THAT(refused.err, HasSubstr(told));
    EXPECT_TRUE(refused.out.empty());
  }
}

TEST_F(Reconcile, TracesSinceWhenTheLedgersDiffer) {
  const auto traced = [](std::vector<std::string> more) {
    std::vector<std::string> arguments{"trace",  "--db",    demo(),   "--account", "1122",
                                       "--item", "C000005", "--lang", "EN"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runVelmora(arguments);
  };
  const auto json = ordered_json::parse(traced({"--format", "json", "--since", "2009-01"}).out);
  EXPECT_EQ(json.at("differsSince").at("period"), 3);
  ASSERT_EQ(json.at("periods").size(), 3U);
  EXPECT_EQ(json.at("periods").at(2).at("arose"), "336910.28");
  EXPECT_EQ(json.at("periods").at(2).at("reasons").size(), 3U);
  EXPECT_THAT(traced({}).out, HasSubstr("the ledgers differ since 2009-03."));
  EXPECT_THAT(traced({"--period", "2009-03"}).out, HasSubstr("4 lines, 3 without a match"));
  EXPECT_THAT(traced({"--since", "2009x4"}).err, HasSubstr("expected YEAR-PERIOD"));
  EXPECT_THAT(traced({"--since", "2009-04"}).err, HasSubstr("is later than 2009-03"));
  EXPECT_THAT(traced({"--period", "2009-77"}).err, HasSubstr("2009-77"));
}

TEST_F(Reconcile, QuotesItemNumbers) {
  const auto one = run({"period", "--items", "C000003..C000003", "--format", "json"});
  EXPECT_EQ(ordered_json::parse(one.out).at("compared"), 3) << one.err;
  EXPECT_THAT(run({"period", "--items", "x' or '1'='1.."}).err,
              HasSubstr("no item of class 1 has a number in x' or '1'='1.."));
}

/// User 16394 may see the customer C000001.
TEST_F(Reconcile, ShowsNoRowsUntilRowAccessIsDecided) {
  ASSERT_EQ(runVelmora({"sql", "--write", "--db", demo(),
                        "insert into t_AccessSwitch (FUserID, FUsed) values (16394, 1)\n"
                        "insert into t_AccessRule (FUserID, FTableName, FKeyID) select 16394, "
                        "'t_Item', FItemID from t_Item where FNumber = 'C000001'"})
                .status,
            kOk);
  const auto dsn = [](const std::string& user) {
    return "ConnectString={Provider=Velmora.Embedded;Data Source=" + demo() +
           ";Mode=Read};SubID=AR;" + user;
  };
  const auto compared = [](const std::vector<std::string>& more) {
    std::vector<std::string> arguments{"reconcile", "period",   "--accounts",
                                       "1122",      "--format", "json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const auto done = runVelmora(arguments);
    return done.out.empty() ? done.err : to_string(ordered_json::parse(done.out)["compared"]);
  };
  EXPECT_EQ(compared({"--db", demo(), "--user", "16394"}), "1");
  EXPECT_EQ(compared({"--dsn", dsn("UserName='t Hooft;UserID=16394;Trusted")}), "1");
  EXPECT_EQ(compared({"--dsn", dsn("UserID=ada"), "--user", "16394"}), "1");
  EXPECT_EQ(compared({"--dsn", dsn("UserID=16394"), "--items", "C000001' or '1'='1.."}), "0");
  EXPECT_THAT(compared({"--db", demo(), "--user", "-1"}), HasSubstr("--user"));
  EXPECT_THAT(compared({"--dsn", dsn("UserName=x;=;UserID=16394")}), HasSubstr("UserID=NUMBER"));

  const std::string request = R"({"class":"clsInitBalCheck","operation":"GetClosingAmtCheck",)"
                              R"("arguments":{"dFilter":{"BYear":2009,"BPeriod":3,"CurrencyID":0,)"
                              R"("ItemClass":1,"AcctList":"1","AcctLogic":"+"}}})";
  for (const std::vector<std::string>& command : {std::vector<std::string>{"reconcile", "period"},
                                                  {"reconcile", "initial"},
                                                  {"reconcile", "closing", "--no-detail"},
                                                  {"call", request}}) {
    auto arguments = command;
    arguments.insert(arguments.end(), {"--dsn", dsn("UserID=ada")});
    const auto refused = runVelmora(arguments);
    EXPECT_EQ(refused.status, kFailed);
    EXPECT_THAT(
        refused.out + refused.err,
        AllOf(HasSubstr("UserID is"), HasSubstr("--no-row-access"), Not(HasSubstr("FAcct"))));
    EXPECT_EQ(refused.out.empty(), command.front() != "call") << refused.out;
    arguments.emplace_back("--no-row-access");
    const auto all = runVelmora(arguments);
    EXPECT_NE(all.status, kFailed);
    EXPECT_NE(all.out, "");
    EXPECT_THAT(all.err, HasSubstr("note: --no-row-access: these are the rows of all users"));
  }
  EXPECT_THAT(run({"closing", "--no-row-access"}).err, HasSubstr("--no-row-access was not needed"));
}

TEST_F(Reconcile, NamesWhatIsWrong) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* message;
  } cases[] = {
      {{"period", "--accounts", "9999x"}, kFailed, "has the number \"9999x\""},
      {{"period", "--accounts=-1122"}, kUsage, "only the closing comparison can subtract"},
      {{"period", "--items", "C2"}, kUsage, "\"C2\" is no range"},
      {{"period", "--items", "C2..C1"}, kUsage, "upside down: C2 comes after C1"},
      {{"period", "--items", "Z9.."}, kFailed, "no item of class 1"},
      {{"period", "--currency", "XXX"}, kFailed, "number or id \"XXX\""},
      {{"period", "--currency", "77"}, kFailed, "\"77\""},
      {{"period", "--item-class", "55"}, kFailed, "no item class 55"},
      {{"period", "--estimates"}, kUsage, "add --side ap"},
      {{"period", "--by-currency"}, kUsage, "add --no-detail"},
      {{"closing", "--by-currency", "--no-detail"}, kUsage, "not with closing"},
      {{"initial", "--unposted"}, kUsage, "--unposted goes with"},
      {{"period", "--year", "2009"}, kUsage, "--period"},
      {{"period", "--year", "2031", "--period", "1"}, kFailed, "2031-01"},
  };
  for (const auto& test : cases) {
    const auto done = run(test.arguments);
    EXPECT_EQ(done.status, test.status) << test.message;
    EXPECT_THAT(done.err, HasSubstr(test.message));
  }
}

}  // namespace
}  // namespace velmora::cli
