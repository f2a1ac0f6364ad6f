#include "cli/reconcile/trace.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>

#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "cli/output/counted.h"
#include "cli/row_access.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  std::string account, item, since, period;
  int itemClass = 0;
  Format format = Format::table;
  bool noRowAccess = false;
};

/// "2009-03".
Period parsePeriod(const char* option, const std::string& text) {
  Period period;
  int length = 0;
  const int read =
      std::sscanf(text.c_str(), "%4d-%2d%n", &period.year, &period.period, &length);  // NOLINT
  if (read != 2 || static_cast<std::size_t>(length) != text.size() || period.year < 1900 ||
      period.period < 1)
    throw UsageError(
        fmt::format("{} \"{}\" is no period; expected YEAR-PERIOD, as in 2009-03", option, text));
  return period;
}

ReconcileOptions asked(const Options& options) {
  ReconcileOptions asked;
  asked.receivables = options.accountSet.receivables;
  asked.accounts = {options.account};
  asked.itemClass = options.itemClass;
  asked.detail = !options.item.empty();
  if (asked.detail) asked.items = options.item + ".." + options.item;
  return asked;
}

int writeMatches(const Options& options, const Session& session, ReconcileOptions wanted,
                 Streams& streams) {
  wanted.period = parsePeriod("--period", options.period);
  const Reconciliation compared = reconcile(session, wanted);
  settleRowAccess(options.noRowAccess, streams.err);
  const auto matches = matched(session, compared);
  const auto rows = matchRows(matches);
  const auto differing = static_cast<std::size_t>(
      std::ranges::count_if(matches, [](const explain::Match& match) { return !match.agrees(); }));
  switch (options.format) {
    case Format::table:
      if (rows->RecordCount() > 0) writeTable(streams.out, *rows, Style::forOutput());
      streams.out << counted(matches.size(), "line") << ", " << differing << " without a match\n";
      break;
    case Format::csv:
      writeCsv(streams.out, *rows);
      break;
    case Format::json:
      writeMatchesJson(streams.out, matches);
      break;
  }
  return differing == 0 ? kOk : kBlocked;
}

int runTrace(const Options& options, Streams& streams) {
  activateComponent();
  const Session session(options.accountSet);
  ado::Connection& connection = session.connection();
  requireAccountSet(connection);
  ReconcileOptions wanted = asked(options);
  if (!options.period.empty()) return writeMatches(options, session, wanted, streams);
  wanted.period = currentPeriod(connection, wanted.receivables);
  const Period since = options.since.empty() ? firstPeriod(connection, wanted.receivables)
                                             : parsePeriod("--since", options.since);
  const Trace found = trace(session, wanted, since);
  settleRowAccess(options.noRowAccess, streams.err);
  if (options.format == Format::table)
    writeTrace(streams.out, found, Style::forOutput());
  else if (options.format == Format::csv)
    writeTraceCsv(streams.out, found);
  else
    writeTraceJson(streams.out, found);
  const bool differs = std::ranges::any_of(
      found.periods, [](const TracedPeriod& period) { return !period.row.difference().isZero(); });
  return differs ? kBlocked : kOk;
}

}  // namespace

void addTrace(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand(
      "trace", "When the ledgers of an account, or of a contact on it, began to differ");
  command->footer(
      "Examples:\n"
      "  velmora trace --db demo.db --account 1122 --lang EN\n"
      "  velmora trace --db demo.db --account 1122 --item C000005 --since 2009-01\n"
      "  velmora trace --db demo.db --account 1122 --item C000005 --period 2009-03\n"
      "\n"
      "Exit status 1: they differ.");
  addConnectionOptions(*command, options->accountSet);
  addSideOption(*command, options->accountSet);
  addRowAccessOptions(*command, options->accountSet, options->noRowAccess);
  command->add_option("--account", options->account, "Control account")
      ->option_text("NUMBER")
      ->required();
  command->add_option("--item", options->item, "Customer or supplier; all together if absent")
      ->option_text("NUMBER");
  command
      ->add_option("--item-class", options->itemClass,
                   "Class of the contacts (1 customers for ar, 8 suppliers for ap)")
      ->option_text("ID")
      ->check(CLI::PositiveNumber);
  auto* since = command
                    ->add_option("--since", options->since,
                                 "First period to show, 2009-01; that of the first use if absent")
                    ->option_text("PERIOD");
  command
      ->add_option("--period", options->period,
                   "The documents and vouchers of this period alone, one to one")
      ->option_text("PERIOD")
      ->excludes(since);
  addLanguageOption(*command, options->accountSet.language);
  addFormatOption(*command, options->format);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return runTrace(*options, streams); };
  });
}

}  // namespace velmora::cli
