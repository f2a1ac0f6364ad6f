#include <fstream>
#include <numeric>
#include <ostream>

#include "cli/commands/commands.h"
#include "cli/copy/account_set_script.h"
#include "cli/copy/copy_progress.h"
#include "cli/failure.h"
#include "cli/new_file.h"
#include "cli/options.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  std::string out;
  bool force = false;
};

std::vector<CopiedTable> write(ado::Connection& source, std::ostream& out, Streams& streams) {
  ProgressLine line(streams.err, errorIsTerminal());
  return writeScript(source, out, showingProgress(line));
}

std::vector<CopiedTable> writeFile(ado::Connection& source, const Options& options,
                                   Streams& streams) {
  NewFile file(options.out, options.force);
  std::ofstream out(file.unfinished(), std::ios::binary);
  const auto requireWritten = [&] {
    if (!out) throw Failure("cannot write " + options.out);
  };
  requireWritten();
  auto written = write(source, out, streams);
  out.close();
  requireWritten();
  file.complete();
  return written;
}

int runScript(const Options& options, Streams& streams) {
  const Session session(options.accountSet, Access::read);
  const auto written = options.out.empty() ? write(session.connection(), streams.out, streams)
                                           : writeFile(session.connection(), options, streams);
  const auto rows =
      std::accumulate(written.begin(), written.end(), std::int64_t{0},
                      [](std::int64_t sum, const CopiedTable& table) { return sum + table.rows; });
  streams.err << counted(static_cast<std::int64_t>(written.size()), "table") << ", "
              << counted(rows, "row") << '\n';
  return kOk;
}

}  // namespace

void addScript(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("script", "Write an account set as T-SQL, to load it into a server");
  command->footer(
      "Examples:\n"
      "  velmora script --db demo.db --out demo.sql\n"
      "  velmora sql --dsn-file trial.dsn --file demo.sql\n"
      "\n"
      "The script makes the tables that the checks read and enters their rows; the database\n"
      "it is run in must not have these tables yet. Without --out it goes to standard output.");
  addConnectionOptions(*command, options->accountSet);
  command->add_option("--out", options->out, "The file to make")->option_text("FILE");
  command->add_flag("--force", options->force, "Replace the file if it exists");
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return runScript(*options, streams); };
  });
}

}  // namespace velmora::cli
