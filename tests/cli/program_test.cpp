#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/failure.h"
#include "demo_set.h"

namespace velmora::cli {
namespace {

using nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ProgramTest : public DemoSet {
 protected:
  static std::string dsn() {
    return "ConnectString={Provider=Velmora.Embedded;Data Source=" + demo() +
           ";Mode=Read};UserName=li;LANGUAGE=EN;SubID=AR;AcctType=;Q8Version=;DBMS Name=;"
           "DBMS Version=";
  }
  static Finished onDemo(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin() + 1, {"--db", demo()});
    return runVelmora(arguments);
  }
};

TEST_F(ProgramTest, DemoTellsWhatItPlantedAndKeepsAnExistingFile) {
  EXPECT_THAT(created_.out, AllOf(HasSubstr("Planted findings"), HasSubstr("receivables")));
  EXPECT_THAT(created_.err, HasSubstr("velmora close-check --db " + demo()));
  EXPECT_LT(std::filesystem::file_size(demo()), 5'000'000U);
  const auto again = runVelmora({"demo", "create", demo()});
  EXPECT_EQ(again.status, kFailed);
  EXPECT_THAT(again.err, HasSubstr("demo.db exists already; --force"));
  const auto nowhere = runVelmora({"demo", "create", folder_->file("no/such/folder.db")});
  EXPECT_EQ(nowhere.status, kFailed);
  EXPECT_THAT(runVelmora({"demo", "create", folder_->file("")}).err, HasSubstr("not a plain file"));
  EXPECT_FALSE(std::filesystem::exists(demo() + ".unfinished"));
}

TEST_F(ProgramTest, GeneratedSetsAreRepeatable) {
  const auto checkedSet = [](const std::string& name, const char* seed) {
    const auto file = folder_->file(name);
    const auto made =
        runVelmora({"demo", "create", file, "--documents", "300", "--seed", seed, "--force"});
    EXPECT_EQ(made.status, kOk) << made.err;
    EXPECT_THAT(made.err, HasSubstr("documents"));
    return runVelmora({"close-check", "--db", file, "--format", "csv"}).out;
  };
  const auto first = checkedSet("a.db", "7");
  EXPECT_EQ(first, checkedSet("a.db", "7"));
  EXPECT_NE(first, checkedSet("b.db", "8"));
}

TEST_F(ProgramTest, CloseCheckTellsTheVerdictInEveryFormat) {
  const auto table = onDemo({"close-check", "--lang", "en"});
  EXPECT_EQ(table.status, kBlocked) << table.err;
  EXPECT_EQ(table.err, "");
  EXPECT_THAT(table.out, HasSubstr("Serious error"));
  EXPECT_THAT(table.out, HasSubstr("The period may not be closed."));

  const auto csv = onDemo({"close-check", "--lang", "EN", "--format", "csv"});
  EXPECT_THAT(csv.out, StartsWith("FID,FChkItem,FChkType,FChkInfo\r\n1,"));
  EXPECT_THAT(csv.err, HasSubstr("may not be closed"));

  const auto json = ordered_json::parse(onDemo({"close-check", "--format", "json"}).out);
  EXPECT_EQ(json.at("mayClose"), false);
  EXPECT_EQ(json.at("findings").size(),
            json.at("seriousErrors").get<std::size_t>() + json.at("warnings").get<std::size_t>());
  EXPECT_EQ(json.at("findings").at(0).at("severity"), "严重错误");
  EXPECT_GT(json.at("seriousErrors").get<int>(), 0);
}

TEST_F(ProgramTest, CloseCheckRepeatsToTheByte) {
  for (const char* side : {"ar", "ap"}) {
    const auto first = onDemo({"close-check", "--side", side, "--show-all"});
    EXPECT_EQ(first.out, onDemo({"close-check", "--side", side, "--show-all"}).out);
    EXPECT_NE(first.status, kFailed) << first.err;
  }
}

TEST_F(ProgramTest, CloseCheckAddsVouchersWithoutDocuments) {
  const auto numbers = ordered_json::parse(
      onDemo({"sql", "--format", "json", "select FNumber from t_Account order by FNumber"}).out);
  std::string accounts;
  for (const auto& row : numbers.at(0).at("rows"))
    accounts += (accounts.empty() ? "" : ",") + row.at(0).get<std::string>();
  const auto plain = ordered_json::parse(onDemo({"close-check", "--format", "json"}).out);
  const auto more = onDemo({"close-check", "--format", "json", "--accounts", accounts});
  ASSERT_EQ(more.status, kBlocked) << more.err;
  const auto withVouchers = ordered_json::parse(more.out);
  const auto before = plain.at("findings").size(), after = withVouchers.at("findings").size();
  ASSERT_GT(after, before);
  EXPECT_EQ(withVouchers.at("findings").at(after - 1).at("id"), after);
  EXPECT_EQ(withVouchers.at("findings").at(after - 1).at("serious"), false);
  EXPECT_THAT(withVouchers.at("findings").at(after - 1).at("message"), HasSubstr("凭证["));
}

TEST_F(ProgramTest, ShowSqlPrintsEachQueryOnStandardError) {
  const auto checked = onDemo({"close-check", "--show-sql"});
  EXPECT_THAT(checked.err, AllOf(HasSubstr("-- 没有审核的单据\n"), HasSubstr("select")));
  EXPECT_EQ(checked.out, onDemo({"close-check"}).out);
}

TEST_F(ProgramTest, BadInputIsNamed) {
  const auto otherTables = folder_->file("other.db");
  runVelmora({"sql", "--write", "--dsn",
              "Provider=Velmora.Embedded;Mode=Create;Data Source=" + otherTables,
              "create table t (a int)"});
  struct Case {
    std::vector<std::string> arguments;
    int status;
    const char* says;
  };
  for (const Case& c : {
           Case{{"close-check"}, kUsage, "--db FILE, --dsn TEXT, --dsn-file FILE or VELMORA_DSN"},
           Case{{"close-check", "--db", folder_->file("none.db")}, kFailed, "there is no file"},
           Case{{"close-check", "--db", folder_->file("")}, kFailed, "is a folder"},
           Case{{"close-check", "--db", folder_->write("text.db", "not a database")},
                kFailed,
                "text.db"},
           Case{
               {"close-check", "--db", otherTables},
               kFailed,
               "no account set: it has no table t_SystemProfile, t_RP_SystemProfile, t_PeriodDate"},
           Case{{"fin-date", "--db", otherTables}, kFailed, "no account set"},
           Case{{"close-check", "--db", demo(), "--accounts", "1122,99' or '1'='1"},
                kFailed,
                "\"99' or '1'='1\""},
           Case{{"close-check", "--db", demo(), "--year", "1999", "--period", "1"},
                kFailed,
                "no period 1999-01; it runs from 2008-01 to 2009-12"},
           Case{{"close-check", "--dsn", "ConnectString={Provider=X};ConnectString=Y"},
                kFailed,
                "\"ConnectString\" twice"},
           Case{{"close-check", "--dsn", "UserName=li"}, kFailed, "neither ConnectString="},
           Case{{"close-check", "--dsn-file", folder_->file("none.txt")}, kFailed, "none.txt"},
           Case{{"sql", "--db", demo(), "select 1\nGO\nselect nothing from nowhere"},
                kFailed,
                "the batch at line 3"},
           Case{{"sql", "--db", demo(), "delete from t_PeriodDate"}, kFailed, "read"},
       }) {
    const auto finished = runVelmora(c.arguments);
    EXPECT_EQ(finished.status, c.status) << c.says << "\n" << finished.err;
    EXPECT_THAT(finished.err, AllOf(HasSubstr("velmora: "), HasSubstr(c.says)));
  }
}

TEST_F(ProgramTest, ConnectionStringsComeFromFileOrEnvironment) {
  const auto file = folder_->write("dsn.txt", "\n  " + dsn() + "\r\n");
  const auto fromFile = runVelmora({"close-check", "--dsn-file", file});
  EXPECT_THAT(fromFile.out, HasSubstr("Serious error")) << fromFile.err;
  EXPECT_EQ(runVelmora({"close-check"}, "", {"VELMORA_DSN=" + dsn()}).out, fromFile.out);
  EXPECT_THAT(runVelmora({"close-check", "--dsn", dsn(), "--lang", "CHT"}).out,
              HasSubstr("嚴重錯誤"));
}

TEST_F(ProgramTest, SqlPrintsEveryResultInTheForm) {
  const std::string script = "select 1 as a\ngo\nselect N'应收' as b, cast(null as int) as c";
  EXPECT_EQ(onDemo({"sql", script}).out, "a\n-\n1\n\nb        c\n----  ----\n应收  NULL\n");
  EXPECT_EQ(onDemo({"sql", "--format", "csv", script}).out, "a\r\n1\r\n\r\nb,c\r\n应收,\r\n");
  const auto json = ordered_json::parse(onDemo({"sql", "--format", "json", script}).out);
  EXPECT_EQ(json.at(1).at("rows").at(0), ordered_json::parse("[\"应收\",null]"));
  EXPECT_EQ(runVelmora({"sql", "--db", demo(), "--file", folder_->write("q.sql", script)}).out,
            runVelmora({"sql", "--db", demo()}, script).out);
}

TEST_F(ProgramTest, SqlChangesOnlyWhenAskedTo) {
  const auto file = folder_->file("changed.db");
  std::filesystem::copy_file(demo(), file, std::filesystem::copy_options::overwrite_existing);
  const std::string change = "update t_PeriodDate set FPeriod = FPeriod where FPeriod = 1";
  EXPECT_EQ(runVelmora({"sql", "--db", file, change}).status, kFailed);
  const auto changed = runVelmora({"sql", "--write", "--db", file, change});
  EXPECT_EQ(changed.status, kOk) << changed.err;
  EXPECT_THAT(changed.err, HasSubstr("affected"));
}

TEST_F(ProgramTest, DefaultAccountIsTheItemsElseTheDocumentTypes) {
  const auto propose = [](const char* item, const char* classType) {
    return onDemo(
        {"default-account", "--item-class", "1", "--item", item, "--class-type", classType});
  };
  EXPECT_EQ(propose("1001", "1000000").out, "1122\n");
  EXPECT_EQ(propose("-1", "1000021").out, "1221\n");
  const auto none = propose("1001", "7");
  EXPECT_EQ(none.out, "0\n");
  EXPECT_THAT(none.err, HasSubstr("no account"));
  EXPECT_EQ(onDemo({"default-account", "--item", "1"}).status, kUsage);
}

TEST_F(ProgramTest, FinDateIsThePeriodsEndOnceItIsOver) {
  const auto date = onDemo({"fin-date", "--side", "ap"});
  EXPECT_EQ(date.status, kOk) << date.err;
  const auto end = ordered_json::parse(
      onDemo({"sql", "--format", "json",
              "select d.FEndDate from t_PeriodDate d join t_RP_SystemProfile y on "
              "y.FKey='FAPCurYear' and d.FYear=y.FValue join t_RP_SystemProfile p on "
              "p.FKey='FAPCurPeriod' and d.FPeriod=p.FValue"})
          .out);
  EXPECT_EQ(date.out, end.at(0).at("rows").at(0).at(0).get<std::string>().substr(0, 10) + "\n");
}

std::string request(const std::string& className, const std::string& operation,
                    const ordered_json& arguments) {
  ordered_json json;
  json["class"] = className;
  json["operation"] = operation;
  json["arguments"] = arguments;
  return json.dump();
}

TEST_F(ProgramTest, CallAnswersOneRequest) {
  const auto text = request("clsInitBalCheck", "GetData",
                            {{"sdsn", dsn()}, {"sSql", "select cast(12.5 as decimal(9,2)) as a"}});
  const auto answer = runVelmora({"call"}, text);
  EXPECT_EQ(answer.status, kOk) << answer.err;
  const auto json = ordered_json::parse(answer.out);
  EXPECT_EQ(json.at("result").at("$recordset").at("rows"), ordered_json::parse(R"([["12.50"]])"));
  EXPECT_EQ(json.at("vote"), "complete");
  EXPECT_EQ(json.at("error"), nullptr);
  EXPECT_EQ(answer.out, runVelmora({"call", text}).out);
}

TEST_F(ProgramTest, CallStreamGoesOnAfterABadLine) {
  const ordered_json filter = {{"BYear", 2009}, {"BPeriod", 3}, {"bchkUnPeriod", true}};
  const auto answers = runVelmora(
      {"call", "--stream", "--db", demo()},
      "not json\n\n" + request("clsInitBalCheck", "GetData", {{"sSql", "select nothing"}}) + "\n" +
          request("clsInitBalCheck", "GetCheckItemDict", {{"dFilter", filter}}) + "\n" +
          request("clsInitBalCheck", "CheckClosingData", {{"dOption", {{"BYear", 0}}}}) + "\n");
  EXPECT_EQ(answers.status, kOk) << answers.err;
  std::istringstream lines(answers.out);
  std::vector<ordered_json> json;
  for (std::string line; std::getline(lines, line);) json.push_back(ordered_json::parse(line));
  ASSERT_EQ(json.size(), 4U);
  EXPECT_THAT(json.at(0).at("error").at("description"), HasSubstr("not valid JSON"));
  EXPECT_NE(json.at(1).at("error").at("number"), nullptr);
  EXPECT_THAT(json.at(2).at("result"),
              testing::Contains(testing::Truly([](const ordered_json& item) {
                return item.at("FSql").is_string() && item.at("FType") == 1;
              })));
  EXPECT_EQ(json.at(2).at("arguments").at("dFilter").at("bCheckPassed"), false);
  EXPECT_EQ(json.at(3).at("result"), false);
  EXPECT_EQ(json.at(3).at("vote"), "abort");
  EXPECT_NE(json.at(3).at("diagnostic").at("description"), "");
  EXPECT_EQ(json.at(3).at("arguments"),
            ordered_json::parse(R"({"dOption":{"BYear":0},"rsReturn":null,"bCanClose":false})"));
}

TEST_F(ProgramTest, RegisterWritesTheUsersRegistry) {
  const auto registry = folder_->file("registry");
  const auto environment = "VELMORA_REGISTRY=" + registry;
  const auto registered = runVelmora({"register"}, "", {environment});
  EXPECT_EQ(registered.status, kOk) << registered.err;
  EXPECT_THAT(registered.out, AllOf(StartsWith(registry + "\n"), HasSubstr("Velmora.clsPublic"),
                                    HasSubstr("libvelmora.so")));
  const auto removed = runVelmora({"unregister"}, "", {environment});
  EXPECT_THAT(removed.out, HasSubstr("Velmora.clsPublic removed"));
  EXPECT_THAT(runVelmora({"unregister"}, "", {environment}).out, Not(HasSubstr("removed")));
}

TEST_F(ProgramTest, AMissingComponentIsNamed) {
  const auto finished =
      runVelmora({"close-check", "--db", demo()}, "", {"VELMORA_COMPONENT=/nowhere/libvelmora.so"});
  EXPECT_EQ(finished.status, kFailed);
  EXPECT_THAT(finished.err, HasSubstr("/nowhere/libvelmora.so"));
}

}  // namespace
}  // namespace velmora::cli
