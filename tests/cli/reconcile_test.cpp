// The comparison with the ledger at the command line.

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "cli/failure.h"
#include "running_program.h"

namespace velmora::cli {
namespace {

using nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Reconcile : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TestFolder;
    created_ = runVelmora({"demo", "create", demo()});
  }
  static void TearDownTestSuite() { delete folder_; }
  void SetUp() override { ASSERT_EQ(created_.status, kOk) << created_.err; }

  static std::string demo() { return folder_->file("demo.db"); }
  static Finished run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "reconcile");
    arguments.insert(arguments.begin() + 2, {"--db", demo()});
    return runVelmora(arguments);
  }

  static inline TestFolder* folder_ = nullptr;
  static inline Finished created_;
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
  EXPECT_EQ(json["side"], "ar");
  EXPECT_EQ(json["accounts"].front(), "1122");
  EXPECT_GT(json["compared"].get<int>(), json["differing"].get<int>());
  std::size_t ordinary = 0;
  for (const auto& row : json["rows"])
    if (row["FSumSort"] == 0) ++ordinary;
  EXPECT_EQ(json["differing"].get<std::size_t>(), ordinary);
  EXPECT_TRUE(json["rows"][0]["FDiffAmount"].is_string()) << "amounts stay exact";
  EXPECT_EQ(csv.out, run({"period", "--only-differences", "--format", "csv"}).out);
}

TEST_F(Reconcile, ShowsTheStatements) {
  EXPECT_THAT(run({"closing", "--show-sql", "--no-detail"}).err,
              AllOf(HasSubstr("-- work tables\n"), HasSubstr("create table #AmtAcct"),
                    HasSubstr("-- general ledger\n")));
}

TEST_F(Reconcile, QuotesItemNumbers) {
  const auto one = run({"period", "--items", "C000003..C000003", "--format", "json"});
  EXPECT_EQ(ordered_json::parse(one.out)["compared"], 3) << one.err;
  EXPECT_THAT(run({"period", "--items", "x' or '1'='1.."}).err,
              HasSubstr("no item of class 1 has a number in x' or '1'='1.."));
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
