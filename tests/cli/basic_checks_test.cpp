// The commands init-check, account-check and period-change as processes.

#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "cli/failure.h"
#include "running_program.h"

namespace velmora::cli {
namespace {

using nlohmann::ordered_json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class BasicChecks : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TestFolder;
    runVelmora({"demo", "create", demo()});
    runVelmora({"demo", "create", fresh(), "--new"});
  }
  static void TearDownTestSuite() { delete folder_; }

  static std::string demo() { return folder_->file("demo.db"); }
  static std::string fresh() { return folder_->file("new.db"); }
  static Finished onDemo(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin() + 1, {"--db", demo()});
    return runVelmora(arguments);
  }
  /// period-change of the first to last day of a month of 2009, to the days given.
  static Finished change(const std::string& month, const std::string& newStart,
                         const std::string& newEnd, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{"period-change", "--year",      "2009",
                                       "--period",      month,         "--old-end",
                                       "2009-12-31",    "--old-start", "2009-" + month + "-01",
                                       "--new-start",   newStart,      "--new-end",
                                       newEnd};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return onDemo(arguments);
  }

  static inline TestFolder* folder_ = nullptr;
};

TEST_F(BasicChecks, InitCheckEndsWithTheVerdict) {
  const auto table = onDemo({"init-check", "--lang", "EN"});
  EXPECT_EQ(table.status, kBlocked) << table.err;
  EXPECT_EQ(table.err, "");
  EXPECT_THAT(table.out, AllOf(HasSubstr("Initial documents - Serious error\n"),
                               HasSubstr("Initial other receivable[] no control account is set"),
                               EndsWith("Receivables: 4 findings, 3 serious errors, 1 warning. The "
                                        "initialisation may not be ended.\n")));
  const auto csv = onDemo({"init-check", "--side", "ap", "--lang", "CHT", "--format", "csv"});
  EXPECT_THAT(csv.out, StartsWith("FID,FChkItem,FTypeID,FChkType,FChkInfo\r\n"
                                  "1,初始化設置,0,嚴重錯誤,"));
  EXPECT_THAT(csv.err, StartsWith("Payables: 3 findings"));
  const auto json = ordered_json::parse(onDemo({"init-check", "--format", "json"}).out);
  EXPECT_EQ(json.at("side"), "ar");
  EXPECT_EQ(json.at("findings").size(), 4U);

  const auto onNew = runVelmora({"init-check", "--db", fresh()});
  EXPECT_EQ(onNew.status, kBlocked) << onNew.err;
  EXPECT_THAT(onNew.out, HasSubstr("没有填写币别基础资料"));
}

TEST_F(BasicChecks, AccountCheckGroupsByItemClass) {
  const auto table = onDemo({"account-check", "--lang", "EN"});
  EXPECT_EQ(table.status, kBlocked) << table.err;
  EXPECT_THAT(table.out, AllOf(HasSubstr("Customer - Warning\n  1  Customer C000009"),
                               HasSubstr("Affiliate - Serious error\n"),
                               HasSubstr("9 findings, 2 serious errors, 7 warnings.")));
  EXPECT_EQ(table.out, onDemo({"account-check", "--lang", "EN"}).out);
  EXPECT_THAT(onDemo({"account-check", "--format", "csv"}).out,
              StartsWith("FID,FErrType,FErrInfo,FKey\r\n1,警告错误,表 客户-数据 C000009("));

  const auto onNew = runVelmora({"account-check", "--db", fresh()});
  EXPECT_EQ(onNew.status, kOk) << onNew.err;
  EXPECT_EQ(onNew.out, "Account check: no findings. Every item has valid accounts.\n");
}

TEST_F(BasicChecks, WarningsAloneDoNotBlock) {
  const auto file = folder_->file("warnings.db");
  std::filesystem::copy_file(demo(), file);
  const auto changed = runVelmora(
      {"sql", "--write", "--db", file, "delete from t_ItemClass where FItemClassID > 3001"});
  ASSERT_EQ(changed.status, kOk) << changed.err;
  const auto finished = runVelmora({"account-check", "--db", file});
  EXPECT_EQ(finished.status, kOk);
  EXPECT_THAT(finished.out, EndsWith("0 serious errors, 7 warnings. Some items lack valid "
                                     "accounts.\n"));
}

TEST_F(BasicChecks, PeriodChangeTellsWhyNot) {
  const auto refused = change("06", "2009-03-10", "2009-06-30", {"--lang", "EN"});
  EXPECT_EQ(refused.status, kBlocked) << refused.err;
  EXPECT_EQ(refused.out,
            "Receivables or payables have documents dated on or after 2009-03-10; the period may "
            "not be changed.\n\nThe dates of period 2009-06 may not be changed.\n");
  const auto allowed = change("06", "2009-06-02", "2009-06-28");
  EXPECT_EQ(allowed.status, kOk) << allowed.err;
  EXPECT_EQ(allowed.out, "The dates of period 2009-06 may be changed.\n");
  EXPECT_EQ(change("06", "2009-06-02", "2009-06-28", {"--format", "csv"}).out,
            "allowed,message\r\n1,\"\"\r\n");
  const auto json =
      ordered_json::parse(change("06", "2009-03-10", "2009-06-30", {"--format", "json"}).out);
  EXPECT_EQ(json.at("allowed"), false);
  EXPECT_THAT(json.at("message"), HasSubstr("2009-03-10"));
}

TEST_F(BasicChecks, ShowSqlPrintsWhatTheComponentRuns) {
  const auto init = onDemo({"init-check", "--show-sql"});
  EXPECT_THAT(init.err, AllOf(HasSubstr("create table #ErrorInfo("),
                              HasSubstr("-- ? = FCheckAccount\n"), Not(HasSubstr(demo()))));
  EXPECT_EQ(init.out, onDemo({"init-check"}).out);
  EXPECT_THAT(onDemo({"account-check", "--show-sql"}).err, HasSubstr("from t_Organization t1 "));
  EXPECT_THAT(change("06", "2009-06-02", "2009-06-28", {"--show-sql"}).err,
              HasSubstr("ffincdate >= '2009-06-01'"));
}

TEST_F(BasicChecks, WhatCannotRunSaysWhy) {
  const auto broken = folder_->file("broken.db");
  std::filesystem::copy_file(demo(), broken);
  const auto dropped = runVelmora({"sql", "--write", "--db", broken,
                                   "drop table t_Currency; drop table t_ItemClass; drop table "
                                   "t_rp_Contact; create table t_rp_Contact (FID int)"});
  ASSERT_EQ(dropped.status, kOk) << dropped.err;
  struct Case {
    Finished finished;
    int status;
    const char* says;
  };
  const auto period = [&](const std::string& file) {
    return runVelmora({"period-change", "--db", file, "--year", "2009", "--period", "6",
                       "--old-start", "2009-06-01", "--old-end", "2009-06-30", "--new-start",
                       "2009-06-01", "--new-end", "2009-06-28"});
  };
  for (const Case& c : {Case{runVelmora({"init-check", "--db", broken}), kFailed,
                             "the initial-data check could not run"},
                        Case{runVelmora({"account-check", "--db", broken}), kFailed, "t_itemclass"},
                        Case{period(broken), kFailed, "the period-change check could not run"},
                        Case{change("06", "2009-02-30", "2009-06-28"), kUsage,
                             "--new-start: \"2009-02-30\" is no date, expected YYYY-MM-DD"},
                        Case{change("06", "2009-06-28", "2009-06-02"), kUsage,
                             "the new period ends on 2009-06-02, before it starts on 2009-06-28"},
                        Case{change("13", "2009-06-02", "2009-06-28"), kUsage, "--old-start"},
                        Case{onDemo({"period-change", "--year", "2009"}), kUsage, "required"},
                        Case{runVelmora({"demo", "create", "x.db", "--new", "--documents", "100"}),
                             kUsage, "--new"}}) {
    EXPECT_EQ(c.finished.status, c.status) << c.says << "\n" << c.finished.err;
    EXPECT_THAT(c.finished.err, HasSubstr(c.says));
  }
}

}  // namespace
}  // namespace velmora::cli
