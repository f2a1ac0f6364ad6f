#include <fmt/format.h>
#include <ostream>

#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/output/counted.h"
#include "cli/output/result_rows.h"
#include "cli/output/result_writer.h"
#include "cli/report/settlement_report.h"
#include "cli/settlement/settlement_run.h"

namespace velmora::cli {

namespace {

struct Options {
  std::string source, destination;
  std::vector<std::string> groupBy;
  std::string amounts = "both";
  bool withQuantity = false, fill = false;
  ReportFile file;  // --out and --force are the settlement rows' too
  std::string language = "chs", updatedSource, updatedDestination;
};

SettlementRun runOf(const Options& options) {
  SettlementRun run;
  run.mode = {options.amounts == "single", options.withQuantity};
  run.groupBy = options.groupBy;
  const auto read = [&](const std::string& file) {
    if (file.empty()) return ado::RecordsetRef();
    return openDocuments(readTable(file, kindOfDocumentColumn), file, run.mode, options.fill);
  };
  run.source = read(options.source);
  run.destination = read(options.destination);
  return run;
}

void writeSummary(std::ostream& out, const SettlementRun& run) {
  ResultRows rows;
  rows.textColumn("Side").textColumn("Currency").countColumn("Documents");
  rows.amountColumn("Settled").amountColumn("Still open").countColumn("Open documents");
  for (const auto& side : run.summary())
    rows.add(side.side)
        .add(side.currency)
        .add(side.documents)
        .add(side.settled)
        .add(side.open)
        .add(side.openDocuments);
  writeTable(out, *rows.finish(), Style::forOutput());
  out << '\n' << counted(run.pairs(), "pair") << " settled\n";
}

void writeFiles(const Options& options, const SettlementRun& run) {
  if (!options.file.out.empty() && !options.file.wanted())
    writeTableFile(options.file.out, *run.table(), options.file.replace);
  if (!options.updatedSource.empty())
    writeTableFile(options.updatedSource, *run.source, options.file.replace);
  if (!options.updatedDestination.empty())
    writeTableFile(options.updatedDestination, *run.destination, options.file.replace);
}

void writeReportOf(const Options& options, const SettlementRun& run,
                   const std::vector<std::string>& faults) {
  explain::Sentences sentences(options.language);
  writeReport(options.file.out, options.file.form, options.file,
              settlementReport(run, faults, options.language, options.file, sentences), sentences);
}

int settle(const Options& options, Streams& streams) {
  if (options.file.wanted()) requireFile(options.file);
  activateComponent();
  SettlementRun run = runOf(options);
  run.run();
  writeFiles(options, run);
  writeSummary(streams.out, run);
  const auto faults = run.faults();
  if (options.file.wanted()) {
    writeReportOf(options, run, faults);
    streams.out << "written: " << options.file.out << '\n';
  }
  if (faults.empty()) {
    streams.out
        << "Checked: every document's settled and open amounts add up, every pair agrees.\n";
    return kOk;
  }
  for (const std::string& fault : faults) streams.err << "does not add up: " << fault << '\n';
  streams.out << counted(faults.size(), "difference") << " found.\n";
  return kBlocked;
}

void addFiles(CLI::App& command, Options& options) {
  command.add_option("--source", options.source, "Open source documents, invoices for instance")
      ->option_text("FILE");
  command
      .add_option("--dest", options.destination,
                  "Open destination documents, receipts for instance")
      ->option_text("FILE");
  command
      .add_option("--out", options.file.out,
                  "Write the settlement rows, with --format the report, to this file")
      ->option_text("FILE");
  command
      .add_option("--updated-source", options.updatedSource,
                  "Write the source documents as they are afterwards")
      ->option_text("FILE")
      ->needs("--source");
  command
      .add_option("--updated-dest", options.updatedDestination,
                  "Write the destination documents as they are afterwards")
      ->option_text("FILE")
      ->needs("--dest");
  addFormatOption(command, options.file.form);
  addReportOptions(command, options.file);
  addLanguageOption(command, options.language);
}

}  // namespace

void addSettle(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("settle", "Settle open documents against one another");
  command->footer(
      "Examples:\n"
      "  velmora settle --source invoices.csv --dest receipts.csv --group-by FID,FCurrencyID\n"
      "  velmora settle --source invoices.csv --dest receipts.csv --fill --out rows.csv\n"
      "\n"
      "Files are CSV with a header line, or JSON recordsets; written as JSON when their name\n"
      "ends in .json. Amounts to settle are FCheckAmountFor and FCheckAmount (local), with\n"
      "--amounts single FCheckAmount alone. On each side negative documents are settled\n"
      "against positive ones first. The result is checked. Exit status 1: it does not add up.");
  addFiles(*command, *options);
  command
      ->add_option("--group-by", options->groupBy,
                   "Columns that must be equal between documents settled with one another")
      ->option_text("COLUMN,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      ->add_option("--amounts", options->amounts,
                   "Foreign and local amounts (the default), or one amount only")
      ->option_text("both|single")
      ->check(CLI::IsMember({"both", "single"}));
  command->add_flag("--with-quantity", options->withQuantity,
                    "Settle quantities too, by FTaxPrice; with both amounts only");
  command->add_flag("--fill", options->fill,
                    "Supply missing columns: descriptions empty, everything still open");
  command->callback([options, &chosen] {
    if (options->source.empty() && options->destination.empty())
      throw CLI::ValidationError("--source", "give --source, --dest or both");
    if (options->withQuantity && options->amounts == "single")
      throw CLI::ValidationError("--with-quantity", "quantities go with --amounts both only");
    chosen = [options](Streams& streams) { return settle(*options, streams); };
  });
}

}  // namespace velmora::cli
