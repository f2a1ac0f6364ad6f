#include <ostream>

#include "cli/caller_string.h"
#include "cli/commands/commands.h"
#include "cli/copy/account_set_copy.h"
#include "cli/copy/copy_progress.h"
#include "cli/failure.h"
#include "cli/new_file.h"
#include "cli/options.h"
#include "cli/output/result_rows.h"
#include "cli/output/result_writer.h"
#include "cli/session.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions from;
  std::string to;
  bool force = false;
};

std::vector<CopiedTable> fill(const Options& options, const std::string& file, Streams& streams) {
  const Session source(options.from, Access::read);
  const auto target = com::make<ado::Connection>();
  target->Open(embeddedConnectString(file, "Create"));
  ProgressLine line(streams.err, errorIsTerminal());
  return copyAccountSet(source.connection(), *target, showingProgress(line));
}

void writeCopied(std::ostream& out, const std::vector<CopiedTable>& tables) {
  ResultRows rows;
  rows.textColumn("Table").countColumn("Rows").countColumn("Sums compared");
  for (const CopiedTable& table : tables)
    rows.add(table.name).add(static_cast<std::size_t>(table.rows)).add(table.sums);
  writeTable(out, *rows.finish(), Style::forOutput());
}

int runCopy(const Options& options, Streams& streams) {
  NewFile file(options.to, options.force);
  const auto tables = fill(options, file.unfinished(), streams);
  file.complete();
  writeCopied(streams.out, tables);
  streams.err << "\nEvery table has the rows and sums of the source.\n";
  return kOk;
}

}  // namespace

void addCopy(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("copy", "Copy an account set into a file, for checks off the server");
  command->footer(
      "Examples:\n"
      "  velmora copy --from-file server.dsn --to books.db\n"
      "  velmora copy --from \"Provider=Velmora.Embedded;Data Source=demo.db\" --to books.db\n"
      "\n"
      "Copies the tables that the checks read, then compares the number of rows and the sum\n"
      "of every amount column with the source. Nobody should work in the source meanwhile.");
  auto* from = command
                   ->add_option("--from", options->from.dsn,
                                "A connection string, the suite's or an ADO one; VELMORA_DSN in "
                                "the environment stands in for it, away from other users' eyes")
                   ->option_text("DSN");
  command->add_option("--from-file", options->from.dsnFile, "A file with a connection string")
      ->option_text("FILE")
      ->excludes(from);
  command->add_option("--to", options->to, "The file to make")->option_text("FILE")->required();
  command->add_flag("--force", options->force, "Replace the file if it exists");
  addTimeoutOption(*command);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return runCopy(*options, streams); };
  });
}

}  // namespace velmora::cli
