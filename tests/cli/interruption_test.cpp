#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>

#include "cli/failure.h"
#include "running_program.h"

// Ctrl-C, SIGTERM and --timeout, each while the program is at work.

namespace velmora::cli {
namespace {

using testing::HasSubstr;

const std::string kLong = [] {
  std::string tables = "t_Account a0";
  for (int i = 1; i < 12; ++i) tables += ", t_Account a" + std::to_string(i);
  return "select sum(a0.FAccountID) from " + tables;
}();

class InterruptionTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    books_ = new TestFolder;
    runVelmora({"demo", "create", demo()});
  }
  static void TearDownTestSuite() { delete books_; }
  InterruptionTest() { std::filesystem::create_directory(temporary()); }

  static std::string demo() { return books_->file("demo.db"); }
  std::string temporary() const { return folder_.file("tmp"); }
  std::vector<std::string> environment() const { return {"TMPDIR=" + temporary()}; }
  static bool isEmpty(const std::string& folder) { return std::filesystem::is_empty(folder); }

  /// Sends the signals once the program has opened its database, which it tells by the folder
  /// that the engine has for it.
  Finished interrupted(const std::vector<std::string>& arguments, std::vector<int> signals) const {
    StartedProgram program(arguments, environment());
    for (int i = 0; i < 3000 && isEmpty(temporary()); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(isEmpty(temporary()));
    for (const int signal : signals) {
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      program.send(signal);
    }
    return program.wait();
  }

  static inline TestFolder* books_ = nullptr;
  TestFolder folder_;
};

TEST_F(InterruptionTest, ASignalEndsWhatIsRunningAndLeavesNothing) {
  const auto made = folder_.file("made.db");
  const auto data =
      R"({"class":"clsPublic","operation":"GetData","arguments":{"sSql":")" + kLong + "\"}}";
  struct Case {
    std::vector<std::string> arguments;
    std::vector<int> signals;
    int status;
  };
  for (const Case& c : {
           Case{{"sql", "--db", demo(), kLong}, {SIGINT}, 130},
           Case{{"call", "--db", demo(), data}, {SIGTERM}, 143},
           Case{{"call", "--db", demo(), "--stream"}, {SIGTERM}, 143},  // waits for a request
           Case{{"call", "--db", demo(), "--stream"}, {SIGTERM, SIGINT}, 130},
           Case{{"demo", "create", made, "--documents", "5000000"}, {SIGINT}, 130},
       }) {
    SCOPED_TRACE(testing::PrintToString(c.arguments));
    const auto start = std::chrono::steady_clock::now();
    const auto finished = interrupted(c.arguments, c.signals);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
    EXPECT_EQ(finished.status, c.status) << finished.err;
    EXPECT_THAT(finished.err, testing::Not(HasSubstr("velmora:")));
    EXPECT_TRUE(isEmpty(temporary()));
    EXPECT_FALSE(std::filesystem::exists(made));
    EXPECT_FALSE(std::filesystem::exists(made + ".unfinished"));
  }
}

TEST_F(InterruptionTest, TheTimeLimitIsToldWithWhatWasRunning) {
  const auto data =
      R"({"class":"clsPublic","operation":"GetData","arguments":{"sSql":")" + kLong + "\"}}";
  const std::string limit = "velmora: stopped after 1 second, the limit that --timeout sets\n";
  const auto sql =
      runVelmora({"sql", "--db", demo(), "--timeout", "1", "\n\n" + kLong}, "", environment());
  EXPECT_EQ(sql.status, kFailed);
  EXPECT_THAT(sql.err, HasSubstr(limit + "  at work: the batch at line 1: The operation was"));
  const auto call = runVelmora({"call", "--db", demo(), "--timeout", "1", data}, "", environment());
  EXPECT_EQ(call.status, kFailed);
  EXPECT_EQ(call.err, limit);
  EXPECT_THAT(call.out, HasSubstr("The operation was cancelled"));
  const auto made = folder_.file("made.db");
  const auto filled = runVelmora(
      {"demo", "create", made, "--documents", "5000000", "--timeout", "1"}, "", environment());
  EXPECT_EQ(filled.status, kFailed);
  EXPECT_FALSE(std::filesystem::exists(made + ".unfinished"));
  EXPECT_TRUE(isEmpty(temporary()));
  EXPECT_EQ(runVelmora({"fin-date", "--db", demo(), "--timeout", "0"}).status, kOk);
}

}  // namespace
}  // namespace velmora::cli
