#include <istream>
#include <iterator>
#include <optional>
#include <ostream>

#include "cli/call/caller.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/row_access.h"
#include "velmora/com/cancellation.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  std::string request;
  bool stream = false, noRowAccess = false;
};

/// Answers `request`; whether its operation ran.
bool tellAnswer(Caller& caller, const std::string& request, Streams& streams) {
  const auto answer = caller.answer(request);
  if (answer.ran && undecidedRowAccess()) streams.err << noRowAccessNote() << '\n';
  streams.out << jsonText(answer.json) << '\n' << std::flush;
  return answer.ran;
}

int answerOne(Caller& caller, const Options& options, Streams& streams) {
  const std::string request = options.request.empty()
                                  ? std::string(std::istreambuf_iterator<char>(streams.in),
                                                std::istreambuf_iterator<char>())
                                  : options.request;
  return tellAnswer(caller, request, streams) ? kOk : kFailed;
}

int answerEachLine(Caller& caller, Streams& streams) {
  for (std::string line; std::getline(streams.in, line) && streams.out;) {
    com::ThrowIfCancelled();
    if (line.find_first_not_of(" \t\r") != std::string::npos) tellAnswer(caller, line, streams);
  }
  return kOk;
}

int call(const Options& options, Streams& streams) {
  activateComponent();
  // A file is kept open, so that the calls do not open it one by one.
  std::optional<Session> session;
  if (!options.accountSet.db.empty()) session.emplace(options.accountSet);
  Caller caller(dsnFor(options.accountSet), options.noRowAccess);
  return options.stream ? answerEachLine(caller, streams) : answerOne(caller, options, streams);
}

}  // namespace

void addCall(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("call", "Run any operation of the component, JSON in and JSON out");
  command->footer(
      "Examples:\n"
      "  velmora call --db demo.db '{\"class\":\"clsPublic\",\"operation\":\"GetCurFincDate\"}'\n"
      "  velmora call --db demo.db --stream <requests.ndjson >answers.ndjson\n"
      "\n"
      "A request names class, operation and arguments:\n"
      "  {\"class\":\"clsInitBalCheck\",\"operation\":\"GetData\",\n"
      "   \"arguments\":{\"sDsn\":\"...\",\"sSql\":\"select 1 as n\"}}\n"
      "Its answer has result, arguments (by-reference and object arguments after the call),\n"
      "vote, error and, when the operation reports failure by its result, diagnostic.\n"
      "Amounts are {\"$decimal\":\"12.50\"}, dates {\"$date\":\"2009-03-01\"}, recordsets\n"
      "{\"$recordset\":{\"fields\":[{\"name\":...,\"type\":\"adVarWChar\",\"size\":80}],\"rows\":[["
      "...]]}}.\n"
      "\n"
      "Exit status 0 when the operation ran, whatever it answered; 3 when \"error\" says why\n"
      "it did not, or that row access could not be decided, and nothing is shown then.\n"
      "With --stream every line is answered and the status is 0.");
  command->add_option("REQUEST", options->request, "The request; standard input if absent")
      ->type_name("");
  command->add_flag(
      "--stream", options->stream,
      "Read one request a line and answer one a line; objects live from line to line");
  addConnectionOptions(*command, options->accountSet);
  addSideOption(*command, options->accountSet);
  addRowAccessOptions(*command, options->accountSet, options->noRowAccess);
  addLanguageOption(*command, options->accountSet.language);
  command->callback([options, &chosen] {
    if (options->stream && !options->request.empty())
      throw CLI::ValidationError("--stream", "the requests come from standard input");
    chosen = [options](Streams& streams) { return call(*options, streams); };
  });
}

}  // namespace velmora::cli
