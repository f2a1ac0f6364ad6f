#include <gmock/gmock.h>
#include <sstream>

#include "cli/failure.h"
#include "cli/program.h"

namespace velmora::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Told {
  int status;
  std::string out, err;
};

Told tell(std::vector<std::string> arguments) {
  std::istringstream in;
  std::ostringstream out, err;
  const int status = runProgram(std::move(arguments), {in, out, err});
  return {status, out.str(), err.str()};
}

/// Checks the help of `command` and of the commands below it.
void checkHelp(const CLI::App& command, std::vector<std::string> path) {
  SCOPED_TRACE(testing::PrintToString(path));
  auto arguments = path;
  arguments.emplace_back("--help");
  const auto help = tell(arguments);
  EXPECT_EQ(help.status, kOk);
  EXPECT_LT(help.out.find("Example"), help.out.find("Usage")) << "examples come first";
  for (const CLI::Option* option : command.get_options()) {
    EXPECT_THAT(help.out, HasSubstr(option->get_name()));
    EXPECT_FALSE(option->get_description().empty()) << option->get_name();
    EXPECT_THAT(help.out, HasSubstr(option->get_description().substr(0, 20)));
  }
  for (const CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; })) {
    EXPECT_THAT(help.out, HasSubstr(below->get_name()));
    EXPECT_FALSE(below->get_description().empty()) << below->get_name();
    auto longer = path;
    longer.push_back(below->get_name());
    checkHelp(*below, longer);
  }
}

TEST(Help, ListsEveryCommandAndOption) {
  cli::Run chosen;
  checkHelp(*makeProgram(chosen), {});
}

TEST(CommandLine, WrongOnesAreToldWithTheCommandToAsk) {
  struct Case {
    std::vector<std::string> arguments;
    const char *says, *command;
  };
  for (const Case& c : {
           Case{{}, "subcommand", "velmora --help"},
           Case{{"closecheck"}, "there is no command \"closecheck\"", "velmora --help"},
           Case{{"demo"}, "subcommand", "velmora demo --help"},
           Case{{"demo", "create"}, "FILE", "velmora demo create --help"},
           Case{{"demo", "create", "a.db", "--documents", "0"}, "--documents", "demo create"},
           Case{{"close-check", "--db", "a", "--dsn", "b"}, "--dsn", "velmora close-check --help"},
           Case{{"close-check", "--db", "a", "--year", "2009"}, "--period", "close-check"},
           Case{
               {"close-check", "--db", "a", "--lang", "de"}, "\"de\" is not one of chs|CHT|EN", ""},
           Case{{"close-check", "--db", "a", "--side", "gl"}, "\"gl\" is not one of ar|ap", ""},
           Case{{"close-check", "--db", "a", "--verbose"}, "--verbose", "close-check"},
           Case{{"sql", "--db", "a", "select 1", "--file", "b"}, "--file", "velmora sql"},
           Case{{"call", "--stream", "{}"}, "standard input", "velmora call"},
       }) {
    const auto told = tell(c.arguments);
    EXPECT_EQ(told.status, kUsage) << told.err;
    EXPECT_THAT(told.err, StartsWith("velmora: "));
    EXPECT_THAT(told.err, HasSubstr(c.says));
    EXPECT_THAT(told.err, HasSubstr(c.command));
    EXPECT_EQ(told.out, "");
  }
}

TEST(CommandLine, Version) {
  EXPECT_THAT(tell({"--version"}).out, StartsWith("velmora 0."));
}

}  // namespace
}  // namespace velmora::cli
