// Reports in files of their own: the dossier of a period, and each check's.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/resource.h>

#include "cli/failure.h"
#include "demo_set.h"

namespace velmora::cli {
namespace {

using nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string contentOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

/// "-1234567.80" as the page shows it.
std::string grouped(std::string amount) {
  const std::size_t first = amount.starts_with('-') ? 1 : 0;
  for (std::size_t at = amount.find('.'); at > first + 3;) amount.insert(at -= 3, ",");
  return amount;
}

class Report : public DemoSet {
 protected:
  /// `command` in words, on the demonstration set.
  static Finished run(const std::string& command,
                      const std::vector<std::string>& environment = {}) {
    std::istringstream words(command);
    std::vector<std::string> arguments;
    for (std::string word; words >> word;) arguments.push_back(word);
    arguments.insert(arguments.end(), {"--db", demo()});
    return runVelmora(arguments, {}, environment);
  }
};

TEST_F(Report, DossierHasWhatTheChecksAnswer) {
  const std::string page = folder_->file("dossier.html");
  const auto made = run("report --lang EN --by Controller --out " + page);
  EXPECT_EQ(made.status, kBlocked) << made.err;
  EXPECT_THAT(made.out, AllOf(HasSubstr("Receivables 2009-03: 41 findings"),
                              HasSubstr("Payables 2009-03: "), HasSubstr("written: " + page)));
  const std::string text = contentOf(page);
  EXPECT_THAT(text, AllOf(HasSubstr("Receivables 2009-03 may not be closed."),
                          HasSubstr("Controller"), HasSubstr("demo.db"),
                          HasSubstr("audit these documents"), Not(HasSubstr(folder_->file("")))));
  for (const std::string side : {"ar", "ap"}) {
    const auto found = run("close-check --format json --lang EN --side " + side);
    const auto compared = run("reconcile period --explain --format json --lang EN --side " + side);
    const auto check = ordered_json::parse(found.out), ledger = ordered_json::parse(compared.out);
    EXPECT_FALSE(check["findings"].empty() || ledger["rows"].empty());
    for (const auto& finding : check["findings"])
      EXPECT_THAT(text,
                  HasSubstr("id=" + side + "-finding-" + std::to_string(finding["id"].get<int>())));
    std::size_t reasons = 0;
    for (const auto& row : ledger["rows"]) {
      for (const auto& [measure, amount] : row["difference"].items())
        EXPECT_THAT(text, HasSubstr(">" + grouped(amount) + "<"));
      for (const auto& reason : row["reasons"]) {
        ++reasons;
        for (const auto& [measure, amount] : reason["difference"].items())
          EXPECT_THAT(text, HasSubstr(">" + grouped(amount) + "<"));
      }
    }
    EXPECT_GE(occurrences(text, "<tr id=" + side + "-reason-"), reasons);
  }
}

TEST_F(Report, SameBooksSameBytes) {
  for (const std::string time : {" --as-of 2009-04-01T09:30:00", ""}) {
    std::string first;
    for (const std::string name : {"first", "second"}) {
      const std::string page = folder_->file(name + ".html"), book = folder_->file(name + ".xlsx");
      const auto made = run("report --force --by A --out " + page + " --xlsx " + book + time,
                            {"SOURCE_DATE_EPOCH=1238578200"});
      ASSERT_EQ(made.status, kBlocked) << made.err;
      const std::string both = contentOf(page) + contentOf(book);
      EXPECT_THAT(both, HasSubstr("2009-04-01 09:30:00"));
      EXPECT_TRUE(first.empty() || first == both) << time;
      first = both;
    }
  }
}

TEST_F(Report, EveryCheckInEitherForm) {
  const std::string settle =
      "settle --fill --source " VELMORA_SOURCE_DIR
      "/demo/settlement/invoices.csv --dest " VELMORA_SOURCE_DIR "/demo/settlement/receipts.csv";
  const struct {
    std::string command, said;
  } cases[] = {
      {"close-check", "Document voucher check"},
      {"close-check --side ap --explain", "Differences and their reasons"},
      {"reconcile initial", "Initial data against the ledger"},
      {"reconcile period --explain", "Document voucher check"},
      {"reconcile period --side ap --no-detail --by-currency", "(currency)"},
      {"reconcile closing --explain --currency USD", "Totals against the ledger"},
      {"init-check", "The initialisation may not be ended."},
      {"account-check", "Item class"},
      {settle, "Pairs settled: 10."},
  };
  for (const auto& [command, said] : cases) {
    SCOPED_TRACE(command);
    const std::string page = folder_->file("check.html"), book = folder_->file("check.xlsx");
    const bool settles = command == settle;
    for (const std::string& form :
         {" --format html --out " + page, " --format xlsx --out " + book}) {
      std::istringstream words(command + " --lang EN --force" + form);
      std::vector<std::string> arguments;
      for (std::string word; words >> word;) arguments.push_back(word);
      if (!settles) arguments.insert(arguments.end(), {"--db", demo()});
      const auto made = runVelmora(arguments);
      EXPECT_LE(made.status, kBlocked) << made.err;
    }
    EXPECT_THAT(contentOf(page), AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr(said),
                                       HasSubstr("What was checked, and what was not")));
    EXPECT_THAT(contentOf(book), StartsWith("PK"));
  }
}

TEST_F(Report, CleanBooksMayBeClosedInEveryLanguage) {
  const std::string set = folder_->file("clean.db"), page = folder_->file("clean.html");
  ASSERT_EQ(runVelmora({"demo", "create", set, "--no-faults"}).status, kOk);
  const std::pair<std::string, std::string> languages[] = {
      {"chs", "应收款 2009-03：可以结账。"},
      {"CHT", "應收款 2009-03：可以結帳。"},
      {"EN", "Receivables 2009-03 may be closed."}};
  for (const auto& [language, verdict] : languages) {
    const auto made =
        runVelmora({"report", "--db", set, "--out", page, "--force", "--lang", language});
    EXPECT_EQ(made.status, kOk) << made.err;
    EXPECT_THAT(contentOf(page), HasSubstr(verdict));
  }
}

TEST_F(Report, NothingHalfIsLeft) {
  const std::string page = folder_->file("kept.html"), text = "the last one";
  folder_->write("kept.html", text);
  const struct {
    std::string options, error;
    std::vector<std::string> environment = {};
    int status = kUsage;
  } cases[] = {
      {"report", "say where to: --out FILE"},
      {"report --out " + page, "kept.html exists already; --force replaces it", {}, kFailed},
      {"report --out " + page + " --force --xlsx " + page, "name the same file"},
      {"report --out /dev/full --force", "/dev/full is not a plain file", {}, kFailed},
      {"report --out " + folder_->file("none/a.html"), "No such file or directory", {}, kFailed},
      {"report --xlsx " + folder_->file("none/a.xlsx"), "No such file or directory", {}, kFailed},
      {"report --force --as-of yesterday --out " + page, "--as-of \"yesterday\" is no time"},
      {"report --force --out " + page,
       "SOURCE_DATE_EPOCH is \"now\"",
       {"SOURCE_DATE_EPOCH=now"},
       kFailed},
      {"report --force --side left --out " + page, "left"},
      {"close-check --format html", "add --out FILE"},
      {"close-check --out " + page, "--out goes with --format html and xlsx"},
  };
  for (const auto& [options, error, environment, status] : cases) {
    const auto made = run(options, environment);
    EXPECT_EQ(made.status, status) << options;
    EXPECT_THAT(made.err, HasSubstr(error)) << options;
  }
  // As on a full disk: a file may not grow beyond 16 KiB.
  const rlimit small{1 << 14, RLIM_INFINITY}, any{RLIM_INFINITY, RLIM_INFINITY};
  std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  const auto page_ = run("report --force --out " + page);
  const auto book = run("report --xlsx " + folder_->file("full.xlsx"));
  setrlimit(RLIMIT_FSIZE, &any);
  std::signal(SIGXFSZ, SIG_DFL);
  for (const Finished* made : {&page_, &book}) {
    EXPECT_EQ(made->status, kFailed);
    EXPECT_THAT(made->err, HasSubstr("cannot write"));
  }
  EXPECT_EQ(contentOf(page), text);
  for (const char* name : {"full.xlsx", "full.xlsx.unfinished", "kept.html.unfinished"})
    EXPECT_FALSE(std::filesystem::exists(folder_->file(name))) << name;
}

TEST_F(Report, SideThatIsNotInUseIsLeftOut) {
  const std::string set = folder_->file("one_side.db"), page = folder_->file("one_side.html");
  std::filesystem::copy_file(demo(), set);
  ASSERT_EQ(runVelmora({"sql", "--db", set, "--write",
                        "delete from t_RP_SystemProfile where FKey = 'FAPCurYear'"})
                .status,
            kOk);
  const auto made = runVelmora({"report", "--db", set, "--out", page, "--lang", "EN"});
  EXPECT_EQ(made.status, kBlocked) << made.err;
  EXPECT_THAT(made.out, Not(HasSubstr("Payables")));
  EXPECT_THAT(contentOf(page), HasSubstr("payables: the account set tells no current period"));
}

}  // namespace
}  // namespace velmora::cli
