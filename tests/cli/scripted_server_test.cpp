// Commands on a server that answers, or goes away, as the test wants.

#include <gmock/gmock.h>
#include <sstream>

#include "cli/failure.h"
#include "cli/program.h"
#include "late_bound.h"
#include "scripted_database.h"

namespace velmora::cli {
namespace {

using collections::Variant;

class ScriptedServer : public testing::Test {
 protected:
  ScriptedServer() {
    database_.answer("FKey='FARCurYear'", rowset({"FValue"}, {"2009"}));
    database_.answer("FKey='FARCurPeriod'", rowset({"FValue"}, {"3"}));
    database_.answer("from sysobjects", rowset({"name"}, {"t"}));
    database_.answer("from t_PeriodDate", rowset({"FPeriod"}, {3}));
    database_.answer("from t_Account where FNumber", rowset({"FAccountID"}, {1122}));
  }
  int run(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--dsn", kScriptedDsn});
    out_.str("");
    err_.str("");
    std::istringstream in;
    return runProgram(std::move(arguments), {in, out_, err_});
  }

  ScriptedDatabase database_;
  com::ScopedClass service_ = monthlyPeriods();
  std::ostringstream out_, err_;
};

TEST_F(ScriptedServer, FindingsOfTheOwnItemReadAsTheComponents) {
  const std::vector<std::string> check{"close-check", "--accounts", "1122", "--format", "csv"};
  const auto answer = [&](const Variant& group) {
    database_.answer("in (1122) and", rowset({"FType", "FGroupName", "FNumber", "FErrInfo"},
                                             {"凭证", group, "12", std::string(400, 'x')}));
  };
  answer("<%3>");
  EXPECT_EQ(run(check), kOk) << err_.str();
  const std::string message = "凭证[<12>-12]:";
  EXPECT_THAT(out_.str(),
              testing::HasSubstr(",警告信息," + message + std::string(288, 'x') + "\r\n"));
  answer(collections::Null{});
  EXPECT_EQ(run(check), kFailed);
  EXPECT_THAT(err_.str(), testing::HasSubstr("column FGroupName of a finding is Null"));
}

TEST_F(ScriptedServer, ThatIsLostIsToldOnOneLineWithThePlaceAtWork) {
  const std::string said = "20004: Read from the server failed (SQLSTATE 08S01)";
  const std::string start = "SET TRANSACTION";  // of each connection that the component opens
  const auto lost = [&](const std::string& operation, const std::string& place) {
    return operation + " could not run: the connection was lost in \"" + place +
           "\"; nothing was changed (" + said + " 0:  (SQLSTATE 08S01))";
  };
  const std::vector<std::string> dates{"--year",      "2009",       "--period",  "3",
                                       "--old-start", "2009-03-01", "--old-end", "2009-03-31",
                                       "--new-start", "2009-03-02", "--new-end", "2009-03-31"};
  struct Case {
    std::vector<std::string> arguments;
    std::string statement;  ///< the one that meets no server
    std::string says;
  };
  for (const Case& c : {
           Case{{"close-check"}, start, lost("the closing check", "t_RP_SystemProfile")},
           Case{{"close-check"}, "FUnTread=1", lost("the closing check", "没有生成凭证的退票单据")},
           Case{{"close-check", "--accounts", "1122"},
                "in (1122) and",
                lost("the closing check", "没有生成凭证的转账单据")},
           Case{{"init-check"},
                "create table #ErrorInfo",
                lost("the initial-data check", "#ErrorInfo")},
           Case{{"account-check"}, start, lost("the account check", "t_ItemClass")},
           Case{{"fin-date"}, start, lost("the financial date", "t_PeriodDate")},
           Case{{"default-account", "--item-class", "1", "--item", "1", "--class-type", "1"},
                start,
                lost("the default account", "t_rp_billType")},
           Case{{"period-change"}, start, lost("the period-change check", "t_rp_contact")},
           Case{{"sql", "select 1"},
                "select 1",
                "the batch at line 1: " + said + " 0:  (SQLSTATE 08S01) (Scripted, error " +
                    std::to_string(com::error::kProviderConnect) + ")"},
       }) {
    database_.lose(c.statement, said + "\n0:  (SQLSTATE 08S01)");
    auto arguments = c.arguments;
    if (arguments.front() == "period-change")
      arguments.insert(arguments.end(), dates.begin(), dates.end());
    EXPECT_EQ(run(arguments), kFailed) << c.says;
    EXPECT_EQ(err_.str(), "velmora: " + c.says + "\n");
    EXPECT_EQ(out_.str(), "");
    database_.forget(c.statement);
  }
}

}  // namespace
}  // namespace velmora::cli
