#include <ostream>

#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/report/dossier.h"
#include "cli/row_access.h"

namespace velmora::cli {

namespace {

struct Options {
  DossierOptions dossier;
  ReportFile page;
  std::string workbook;
};

std::string verdictOf(const Dossier& dossier) {
  std::string text;
  for (const auto& side : dossier.sides)
    text += (text.empty() ? "" : "\n") + side->checked.closing.verdict();
  return text;
}

int makeReport(const Options& options, Streams& streams) {
  if (options.page.out.empty() && options.workbook.empty())
    throw UsageError("say where to: --out FILE for the page, --xlsx FILE for the workbook");
  if (options.page.out == options.workbook) throw UsageError("--out and --xlsx name the same file");
  for (const std::string& file : {options.page.out, options.workbook})
    if (!file.empty()) requireWritable(file, options.page);
  activateComponent();
  ProgressLine line(streams.err, errorIsTerminal());
  const auto progress = [&line](const std::string& text) {
    if (errorIsTerminal()) line.show(text);
  };
  const Session session(options.dossier.accountSet);
  const Dossier dossier = makeDossier(session, options.dossier, streams.err, progress);
  explain::Sentences sentences(session.language());
  const report::Report report =
      reportOf(session, dossier, options.dossier, options.page, sentences);
  progress("writing");
  if (!options.page.out.empty())
    writeReport(options.page.out, ReportForm::html, options.page, report, sentences);
  if (!options.workbook.empty())
    writeReport(options.workbook, ReportForm::xlsx, options.page, report, sentences);
  line.clear();
  streams.out << verdictOf(dossier) << '\n';
  for (const std::string& file : {options.page.out, options.workbook})
    if (!file.empty()) streams.out << "written: " << file << '\n';
  return dossier.blocked() ? kBlocked : kOk;
}

void addSides(CLI::App& command, DossierOptions& options) {
  command
      .add_option_function<std::string>(
          "--side",
          [&options](const std::string& side) {
            options.receivables = side != "ap";
            options.payables = side != "ar";
          },
          "Receivables, payables or both (the default)")
      ->option_text("ar|ap|both")
      ->transform(CLI::IsMember({"ar", "ap", "both"}, CLI::ignore_case));
}

}  // namespace

void addReport(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand(
      "report", "Make the closing dossier of a period: one page, one workbook");
  command->footer(
      "Examples:\n"
      "  velmora report --db demo.db --out closing.html --xlsx closing.xlsx --lang EN\n"
      "  velmora report --db demo.db --side ap --year 2009 --period 3 --out ap.html\n"
      "\n"
      "Whether each side may be closed, what prevents it, how and why the ledger differs, what\n"
      "initial data and accounts lack, what was checked and what was not. Exit status 1: a side\n"
      "may not be closed.");
  DossierOptions& dossier = options->dossier;
  addConnectionOptions(*command, dossier.accountSet);
  addSides(*command, dossier);
  addPeriodOptions(*command, dossier.period.year, dossier.period.period,
                   "Fiscal year; the current one of each side if absent");
  command->add_flag("--show-all", dossier.showAll,
                    "Also findings on vouchers that the account set does not demand");
  addRowAccessOptions(*command, dossier.accountSet, dossier.noRowAccess);
  addLanguageOption(*command, dossier.accountSet.language);
  command->add_option("--out", options->page.out, "The page to write")->option_text("FILE");
  command->add_option("--xlsx", options->workbook, "The workbook to write")->option_text("FILE");
  addReportOptions(*command, options->page);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return makeReport(*options, streams); };
  });
}

}  // namespace velmora::cli
