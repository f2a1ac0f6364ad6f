#include <fmt/format.h>
#include <future>
#include <ostream>

#include "cli/closing/closing_check.h"
#include "cli/closing/finding_reasons.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/reconcile/comparison_report.h"
#include "cli/reconcile/explained.h"
#include "cli/reconcile/explained_report.h"
#include "cli/report/check_reports.h"
#include "cli/row_access.h"
#include "cli/secrets.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  ReconcileOptions reconcile;
  Format format = Format::table;
  ReportFile file;
  bool onlyDifferences = false, showSql = false, noRowAccess = false;
  bool explain = false;
  ExplainedForm form;
  std::string account, item;
};

constexpr std::pair<const char*, const char*> kStatements[] = {
    {"work tables", "Chk_CreateTable"},
    {"receivables or payables", "Chk_InitArpAmt"},
    {"general ledger", "Chk_InitGlAmt"},
    {"differences, totals and names", "Chk_UpdateTable"}};

void writeStatements(std::ostream& err, const collections::Dictionary& filter) {
  for (const auto& [caption, key] : kStatements)
    err << "-- " << caption << '\n' << filter.Value(key).toText() << "\n\n";
}

std::string title(const Reconciliation& reconciliation) {
  const ReconcileOptions& options = reconciliation.options;
  std::string accounts;
  for (const std::string& account : options.accounts)
    accounts += (accounts.empty() ? "" : ",") + account;
  return fmt::format(
      "{} {}, {}, accounts {}", options.receivables ? "Receivables" : "Payables",
      toString(options.period),
      reconciliation.currency.id == 0 ? "all currencies" : reconciliation.currency.name, accounts);
}

/// Where a report is asked for; `explanation` and `checks` may be nothing.
void writeReportOf(Streams& streams, const Session& session, const Reconciliation& reconciliation,
                   const explain::Explanation* explanation, const FindingReasons* checks,
                   const std::string& verdict, const ReportFile& file) {
  explain::Sentences sentences(session.language());
  writeReport(file.out, file.form, file,
              comparisonReport(session, reconciliation, explanation, checks, file, sentences),
              sentences);
  streams.out << verdict << "\nwritten: " << file.out << '\n';
}

void writeResult(Streams& streams, const Session& session, const Reconciliation& reconciliation,
                 const ComparisonSummary& summary, const Options& options) {
  const Format format = options.format;
  const std::string verdict = title(reconciliation) + ": " + summary.text + ".";
  if (options.file.wanted())
    return writeReportOf(streams, session, reconciliation, nullptr, nullptr, verdict, options.file);
  if (format == Format::table) {
    const Style style = Style::forOutput();
    writeComparison(streams.out, reconciliation, style);
    streams.out << (summary.differing == 0 ? style.good(verdict) : style.serious(verdict)) << '\n';
    return;
  }
  if (format == Format::csv)
    writeCsv(streams.out, *reconciliation.rows);
  else
    writeComparisonJson(streams.out, reconciliation, summary);
  streams.err << verdict << '\n';
}

/// The closing check of the compared period, for the reasons to name its items; started before
/// the comparison, it costs hardly any time beside it.
std::future<ClosingReport> closingCheckBeside(const Session& session,
                                              const Reconciliation& reconciliation) {
  if (reconciliation.options.comparison == Comparison::initial) return {};
  ClosingOptions closing;
  closing.receivables = reconciliation.options.receivables;
  closing.period = reconciliation.options.period;
  closing.accountIds = reconciliation.filter->Value("AcctList").toText();
  return startClosingCheck(session, closing);
}

/// What runs beside a comparison that is to be explained.
struct Beside {
  std::future<ClosingReport> closing;
  std::future<explain::Inquiry> inquiry;
};

/// What the closing check found; nothing where it could not be run: books that it cannot check are
/// explained all the same.
std::optional<Findings> findingsOf(std::future<ClosingReport>& closing, std::ostream& err) {
  if (!closing.valid()) return std::nullopt;
  try {
    return closing.get().findings;
  } catch (const std::exception& error) {
    err << "note: the reasons do not name items of the closing check: "
        << withoutPasswords(error.what()) << '\n';
    return std::nullopt;
  }
}

void writeExplanation(Streams& streams, const Session& session,
                      const Reconciliation& reconciliation, const ComparisonSummary& summary,
                      const Options& options, Beside& beside) {
  const explain::Explanation explanation =
      explained(session, reconciliation, std::move(beside.inquiry));
  for (const std::string& note : explanation.notes) streams.err << "note: " << note << '\n';
  ExplainedForm form = options.form;
  std::optional<FindingReasons> checks;
  if (const auto findings = findingsOf(beside.closing, streams.err))
    form.checks = &checks.emplace(*findings, explanation, session.language());
  const std::string verdict = title(reconciliation) + ": " + summary.text + ".";
  if (options.file.wanted())
    return writeReportOf(streams, session, reconciliation, &explanation, form.checks, verdict,
                         options.file);
  if (options.format == Format::table) {
    const Style style = Style::forOutput();
    writeExplained(streams.out, reconciliation, explanation, form, style);
    streams.out << (summary.differing == 0 ? style.good(verdict) : style.serious(verdict)) << '\n';
    return;
  }
  if (options.format == Format::csv)
    writeExplainedCsv(streams.out, reconciliation, explanation, form);
  else
    writeExplainedJson(streams.out, reconciliation, summary, explanation, form);
  streams.err << verdict << '\n';
}

/// Narrows what is asked for to one account and contact.
void narrow(ReconcileOptions& asked, const Options& options) {
  if (!options.account.empty()) {
    if (asked.comparison == Comparison::closing)
      throw UsageError("--account goes with initial and period; closing takes a side as a whole");
    if (!asked.accounts.empty()) throw UsageError("give --account or --accounts, not both");
    asked.accounts = {options.account};
  }
  if (options.item.empty()) return;
  if (!asked.items.empty()) throw UsageError("give --item or --items, not both");
  if (!asked.detail)
    throw UsageError("--item needs the rows of the contacts; leave --no-detail out");
  asked.items = options.item + ".." + options.item;
}

int runReconcile(const Options& options, Streams& streams) {
  requireFile(options.file);
  activateComponent();
  const Session session(options.accountSet);
  requireAccountSet(session.connection());
  ReconcileOptions asked = options.reconcile;
  asked.receivables = options.accountSet.receivables;
  narrow(asked, options);
  Reconciliation reconciliation = prepared(session, asked);
  Beside beside;
  if (options.explain)
    beside = {closingCheckBeside(session, reconciliation), startInquiry(session, reconciliation)};
  run(session, reconciliation);
  settleRowAccess(options.noRowAccess, streams.err);
  if (options.showSql) writeStatements(streams.err, *reconciliation.filter);
  if ((asked.estimates || asked.outsourcing) && reconciliation.currency.id > 1)
    streams.err << "note: estimates are kept in local currency; they do not count here\n";
  const ComparisonSummary summary = summaryOf(reconciliation);
  if (options.explain) {
    writeExplanation(streams, session, reconciliation, summary, options, beside);
  } else {
    if (options.onlyDifferences) keepDifferences(reconciliation);
    writeResult(streams, session, reconciliation, summary, options);
  }
  return summary.differing == 0 ? kOk : kBlocked;
}

void addScopeOptions(CLI::App& command, ReconcileOptions& options) {
  command
      .add_option("--accounts", options.accounts,
                  "Control accounts; in closing a leading \"-\" subtracts one; those of the "
                  "side's document types and contacts if absent")
      ->option_text("NUMBER,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      .add_option("--currency", options.currency,
                  "Currency number or id; 0 takes all currencies together (0)")
      ->option_text("CURRENCY");
  command
      .add_option("--item-class", options.itemClass,
                  "Class of the contacts (1 customers for ar, 8 suppliers for ap)")
      ->option_text("ID")
      ->check(CLI::PositiveNumber);
  command.add_option("--items", options.items, "Range of item numbers; either end may be open")
      ->option_text("FROM..TO");
}

void addContentOptions(CLI::App& command, Options& options) {
  ReconcileOptions& reconcile = options.reconcile;
  command.add_flag("--detail,!--no-detail", reconcile.detail,
                   "A row for every contact with totals (the default), or totals alone");
  command.add_flag("--unposted", reconcile.unposted, "The ledger takes unposted vouchers too");
  command.add_flag("--estimates", reconcile.estimates,
                   "Payables include goods received whose invoice has not come");
  command.add_flag("--outsourcing", reconcile.outsourcing,
                   "Payables include outsourced processing whose invoice has not come");
  command.add_flag("--by-currency", reconcile.byCurrency,
                   "A row for every foreign currency, with --no-detail");
  command.add_flag("--only-differences", options.onlyDifferences, "Only rows that differ");
}

void addExplainOptions(CLI::App& command, Options& options) {
  auto* explain = command.add_flag(
      "--explain", options.explain,
      "Why each row differs: the documents and vouchers that make up the difference");
  command.add_option("--account", options.account, "Explain this account alone")
      ->option_text("NUMBER")
      ->needs(explain);
  command.add_option("--item", options.item, "Explain this customer or supplier alone")
      ->option_text("NUMBER")
      ->needs(explain);
  command.add_flag("--only-reasons", options.form.onlyReasons, "Totals by reason without the rows")
      ->needs(explain);
  command.add_flag("--all", options.form.all, "Also rows that agree")->needs(explain);
}

void addComparison(CLI::App& parent, Run& chosen, Comparison comparison, const char* name,
                   const char* description) {
  auto options = std::make_shared<Options>();
  options->reconcile.comparison = comparison;
  CLI::App* command = parent.add_subcommand(name, description);
  command->footer(
      fmt::format("Examples:\n"
                  "  velmora reconcile {0} --db demo.db --only-differences\n"
                  "  velmora reconcile {0} --db demo.db --side ap --no-detail\n"
                  "\n"
                  "Exit status 1: something differs.",
                  name));
  addConnectionOptions(*command, options->accountSet);
  addSideOption(*command, options->accountSet);
  addRowAccessOptions(*command, options->accountSet, options->noRowAccess);
  addPeriodOptions(*command, options->reconcile.period.year, options->reconcile.period.period,
                   "Fiscal year; if absent the current one, for initial the first one in use");
  addScopeOptions(*command, options->reconcile);
  addContentOptions(*command, *options);
  addExplainOptions(*command, *options);
  addLanguageOption(*command, options->accountSet.language);
  addReportFormatOptions(*command, options->format, options->file);
  command->add_flag("--show-sql", options->showSql, "Print the statements on standard error");
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return runReconcile(*options, streams); };
  });
}

}  // namespace

void addReconcile(CLI::App& program, Run& chosen) {
  CLI::App* command = program.add_subcommand(
      "reconcile", "Compare receivables or payables with the general ledger");
  command->footer(
      "Examples:\n"
      "  velmora reconcile initial --db demo.db\n"
      "  velmora reconcile period --db demo.db --year 2009 --period 2 --only-differences\n"
      "  velmora reconcile closing --db demo.db --side ap --accounts 2202,-1123 --format csv\n"
      "\n"
      "Exit status 1: something differs.");
  command->require_subcommand(1);
  addComparison(*command, chosen, Comparison::initial, "initial",
                "Initial data against the ledger's opening balances");
  addComparison(*command, chosen, Comparison::period, "period",
                "Balances and movements of a period, account by account");
  addComparison(*command, chosen, Comparison::closing, "closing",
                "One side as a whole against a list of accounts");
}

}  // namespace velmora::cli
