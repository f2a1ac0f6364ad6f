#include "cli/program.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>

#include "cli/commands/commands.h"
#include "cli/failure.h"
#include "cli/interruption.h"
#include "cli/output/counted.h"
#include "cli/secrets.h"
#include "report/display_width.h"
#include "velmora/ado/diagnostics.h"
#include "velmora/com/cancellation.h"
#include "velmora/com/error.h"

namespace velmora::cli {

namespace {

/// Help that begins with what people look for: examples.
class HelpFormatter final : public CLI::Formatter {
 public:
  std::string make_description(const CLI::App* app) const override {
    return app->get_description() + "\n\n" + app->get_footer() + "\n\n";
  }
  std::string make_footer(const CLI::App*) const override { return {}; }
};

constexpr const char* kExamples =
    "Examples:\n"
    "  velmora demo create demo.db\n"
    "  velmora close-check --db demo.db --lang EN\n"
    "  velmora close-check --db demo.db --side ap --year 2009 --period 3 --format csv\n"
    "  velmora reconcile period --db demo.db --only-differences\n"
    "  velmora settle --source invoices.csv --dest receipts.csv --group-by FID,FCurrencyID\n"
    "  velmora sql --db demo.db \"select FNumber, FName from t_Account\"\n"
    "\n"
    "Exit status: 0 ran and nothing blocks, 1 ran and something blocks, 2 the command\n"
    "line is wrong, 3 it could not run (or not within --timeout), 130 Ctrl-C, 143 SIGTERM.";

const CLI::App& reachedCommand(const CLI::App& program) {
  const CLI::App* command = &program;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  return *command;
}

/// Seconds that the command may take, 0 without limit.
int timeLimit(const CLI::App& program) {
  const auto* option = reachedCommand(program).get_option_no_throw("--timeout");
  return option == nullptr || option->empty() ? 0 : option->as<int>();
}

/// Whether the engine's own words are wanted beside its errors.
bool isDebugging(const CLI::App& program) {
  const auto* option = reachedCommand(program).get_option_no_throw("--debug");
  return option != nullptr && !option->empty();
}

/// "velmora demo create", of the command that the arguments reached.
std::string chosenCommand(const CLI::App& program) {
  std::string path = program.get_name();
  for (const CLI::App* command = &program; !command->get_subcommands().empty();) {
    command = command->get_subcommands().front();
    path += " " + command->get_name();
  }
  return path;
}

bool hasCommand(const CLI::App& program, const std::string& name) {
  const auto commands = program.get_subcommands([](const CLI::App*) { return true; });
  return std::any_of(commands.begin(), commands.end(),
                     [&](const CLI::App* command) { return command->get_name() == name; });
}

int tellUsage(const CLI::App& program, Streams& streams, std::string_view message) {
  fmt::format_to(std::ostream_iterator<char>(streams.err), "velmora: {}\nTry `{} --help`.\n",
                 message, chosenCommand(program));
  return kUsage;
}

int tellFailure(Streams& streams, std::string_view message) {
  streams.out.flush();
  streams.err << "velmora: " << withoutPasswords(message) << '\n';
  return kFailed;
}

/// Raises CLI::ParseError.
void parse(CLI::App& program, std::vector<std::string> arguments) {
  if (!arguments.empty() && !arguments.front().starts_with('-') &&
      !hasCommand(program, arguments.front()))
    throw UsageError(fmt::format("there is no command \"{}\"", arguments.front()));
  std::reverse(arguments.begin(), arguments.end());
  program.parse(std::move(arguments));
}

std::string overdueText(int seconds) {
  return fmt::format("stopped after {}, the limit that --timeout sets", counted(seconds, "second"));
}

/// Of the exception being handled.
std::string failureText() {
  try {
    throw;
  } catch (const com::Error& error) {
    // What a driver says of a lost connection may hold empty lines.
    const bool lost = error.number() == com::error::kProviderConnect;
    const std::string text = lost ? report::singleLine(error.description()) : error.description();
    return fmt::format("{} ({}, error {})", text, error.source(), error.number());
  } catch (const std::exception& error) {
    return error.what();
  }
}

/// Runs the command until it ends, at the latest when a signal or its time limit says so.
int run(const Run& chosen, Streams& streams, int seconds) {
  Interruption interruption(seconds, [&] { tellFailure(streams, overdueText(seconds)); });
  const com::CancellationScope scope(interruption.token());
  int status = kFailed;
  std::string failure;
  try {
    status = chosen(streams);
    if (!streams.out.flush()) throw Failure("cannot write the result");
  } catch (const UsageError&) {
    throw;
  } catch (const std::exception&) {
    failure = failureText();
  }
  if (const auto signalled = interruption.signalStatus()) return *signalled;
  if (interruption.timedOut())
    failure = overdueText(seconds) + (failure.empty() ? "" : "\n  at work: " + failure);
  return failure.empty() ? status : tellFailure(streams, failure);
}

int parseAndRun(CLI::App& program, const Run& chosen, std::vector<std::string> arguments,
                Streams& streams) {
  try {
    parse(program, std::move(arguments));
    const ado::ShownEngineWords shown(
        [&, debugging = isDebugging(program)](std::string_view words) {
          if (debugging) streams.err << "engine: " << words << '\n';
        });
    return run(chosen, streams, timeLimit(program));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program.exit(error, streams.out, streams.err);
    return tellUsage(program, streams, error.what());
  } catch (const UsageError& error) {
    return tellUsage(program, streams, error.what());
  } catch (const std::exception&) {
    return tellFailure(streams, failureText());
  }
}

}  // namespace

std::unique_ptr<CLI::App> makeProgram(Run& chosen) {
  auto program = std::make_unique<CLI::App>(
      "velmora checks receivables and payables before a period is closed.", "velmora");
  program->formatter(std::make_shared<HelpFormatter>());
  program->footer(kExamples);
  program->set_help_flag("-h,--help", "Show this help");
  program->set_version_flag("--version", "velmora " VELMORA_VERSION, "Show the version");
  program->require_subcommand(1);
  addDemo(*program, chosen);
  addCloseCheck(*program, chosen);
  addInitCheck(*program, chosen);
  addAccountCheck(*program, chosen);
  addPeriodChange(*program, chosen);
  addReconcile(*program, chosen);
  addReport(*program, chosen);
  addTrace(*program, chosen);
  addSettle(*program, chosen);
  addDistribute(*program, chosen);
  addDefaultAccount(*program, chosen);
  addFinDate(*program, chosen);
  addSql(*program, chosen);
  addCopy(*program, chosen);
  addScript(*program, chosen);
  addCall(*program, chosen);
  addRegistration(*program, chosen);
  return program;
}

int runProgram(std::vector<std::string> arguments, Streams streams) {
  Run chosen;
  const auto program = makeProgram(chosen);
  return parseAndRun(*program, chosen, std::move(arguments), streams);
}

}  // namespace velmora::cli
