#include <fmt/format.h>
#include <ostream>

#include "cli/closing/closing_check.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/reconcile/explained.h"
#include "cli/report/check_reports.h"
#include "cli/row_access.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  Format format = Format::table;
  ReportFile file;
  int year = 0, period = 0;
  bool showAll = false, showSql = false, explain = false, noRowAccess = false;
  std::vector<std::string> accounts;
};

ClosingOptions closingOptions(const Options& options, const Session& session) {
  ClosingOptions closing;
  closing.receivables = options.accountSet.receivables;
  closing.period = {options.year, options.period};
  closing.showAll = options.showAll;
  closing.accountIds = accountIds(session.connection(), options.accounts);
  closing.period = periodToCheck(session, closing);
  return closing;
}

void writeQueries(std::ostream& err, const std::vector<CheckQuery>& queries) {
  for (const CheckQuery& query : queries)
    err << "-- " << query.caption << '\n' << query.sql << "\n\n";
}

/// Shows which check is running while a person waits for it.
CheckProgress progressOn(ProgressLine& line) {
  if (!errorIsTerminal()) return {};
  return [&line](const std::string& caption, int index, int count) {
    line.show(fmt::format("{}/{} {}", index, count, caption));
  };
}

void writeText(std::ostream& out, const ClosingReport& report, Format format,
               const ExplainedFindings* explained) {
  switch (format) {
    case Format::table:
      return writeReport(out, report, Style::forOutput(), explained);
    case Format::csv:
      return writeReportCsv(out, report, explained);
    case Format::json:
      return writeReportJson(out, report, explained);
  }
}

/// What the findings move in the comparison of the period, account by account.
std::unique_ptr<CheckedSide> explainedSide(Streams& streams, const Session& session,
                                           ClosingReport report, const Options& options,
                                           ProgressLine& line) {
  if (errorIsTerminal()) line.show("comparison with the ledger");
  ReconcileOptions asked;
  asked.receivables = report.receivables;
  asked.period = report.period;
  asked.accounts = options.accounts;
  Reconciliation comparison = prepared(session, asked);
  auto inquiry = startInquiry(session, comparison);
  run(session, comparison);
  line.clear();
  settleRowAccess(options.noRowAccess, streams.err);
  explain::Explanation explanation = explained(session, comparison, std::move(inquiry));
  for (const std::string& note : explanation.notes) streams.err << "note: " << note << '\n';
  return std::make_unique<CheckedSide>(std::move(report), std::move(comparison),
                                       std::move(explanation), session.language());
}

/// `side` is the report explained, where that is asked for.
void writeResult(Streams& streams, const Session& session, const ClosingReport& report,
                 const CheckedSide* side, const Options& options) {
  if (options.file.wanted()) {
    explain::Sentences sentences(session.language());
    writeReport(options.file.out, options.file.form, options.file,
                closingReport(session, report, side, options.file, sentences), sentences);
    streams.out << report.verdict() << "\nwritten: " << options.file.out << '\n';
    return;
  }
  std::optional<ExplainedFindings> explained;
  if (side != nullptr)
    explained.emplace(ExplainedFindings{side->comparison, side->explanation, side->reasons});
  writeText(streams.out, report, options.format, explained ? &*explained : nullptr);
  if (options.format != Format::table) streams.err << report.verdict() << '\n';
}

int closeCheck(const Options& options, Streams& streams) {
  requireFile(options.file);
  activateComponent();
  const Session session(options.accountSet);
  requireAccountSet(session.connection());
  const ClosingOptions closing = closingOptions(options, session);
  if (options.showSql) writeQueries(streams.err, closingQueries(session, closing));
  ProgressLine line(streams.err, true);
  const ClosingReport report = runClosingCheck(session, closing, progressOn(line));
  line.clear();
  std::unique_ptr<CheckedSide> side;
  if (options.explain) side = explainedSide(streams, session, report, options, line);
  writeResult(streams, session, report, side.get(), options);
  return report.mayClose ? kOk : kBlocked;
}

}  // namespace

void addCloseCheck(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("close-check", "List what prevents the closing of a period");
  command->footer(
      "Examples:\n"
      "  velmora close-check --db demo.db --lang EN\n"
      "  velmora close-check --db demo.db --side ap --year 2009 --period 3 --show-all\n"
      "  velmora close-check --db demo.db --accounts 1122,2203 --format csv >findings.csv\n"
      "  velmora close-check --db demo.db --explain\n"
      "  velmora close-check --db demo.db --explain --format html --out closing.html\n"
      "\n"
      "Exit status 1: serious errors were found, the period may not be closed.");
  addConnectionOptions(*command, options->accountSet);
  addSideOption(*command, options->accountSet);
  addPeriodOptions(*command, options->year, options->period,
                   "Fiscal year; the current one if absent");
  command->add_flag("--show-all", options->showAll,
                    "Also findings on vouchers that the account set does not demand");
  command
      ->add_option("--accounts", options->accounts,
                   "Control accounts; vouchers on them without a document are listed too")
      ->option_text("NUMBER,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  auto* explain = command->add_flag(
      "--explain", options->explain,
      "By how much each finding moves the comparison with the ledger (reconcile period)");
  addRowAccessOptions(*command, options->accountSet, options->noRowAccess);
  command->get_option("--no-row-access")->needs(explain);
  addLanguageOption(*command, options->accountSet.language);
  addReportFormatOptions(*command, options->format, options->file);
  command->add_flag("--show-sql", options->showSql, "Print each check's query on standard error");
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return closeCheck(*options, streams); };
  });
}

}  // namespace velmora::cli
