#include "cli/reconcile/reconciliation.h"

#include <fmt/format.h>

#include "cli/component.h"
#include "cli/failure.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

namespace {

using collections::Dictionary;
using collections::DictionaryRef;

void requireSense(const ReconcileOptions& options) {
  if (options.receivables && (options.estimates || options.outsourcing))
    throw UsageError("--estimates and --outsourcing are about payables; add --side ap");
  if (options.byCurrency && options.comparison == Comparison::closing)
    throw UsageError("--by-currency goes with initial and period, not with closing");
  if (options.byCurrency && options.detail)
    throw UsageError("--by-currency has a row an account and currency; add --no-detail");
  if (options.unposted && options.comparison == Comparison::initial)
    throw UsageError("--unposted goes with period and closing; there are no vouchers before them");
  if (options.comparison != Comparison::closing)
    for (const std::string& account : options.accounts)
      if (account.starts_with('-'))
        throw UsageError(fmt::format(
            "--accounts \"{}\": only the closing comparison can subtract an account", account));
}

ReconcileOptions completed(ado::Connection& connection, ReconcileOptions options) {
  if (options.period.year == 0)
    options.period = options.comparison == Comparison::initial
                         ? firstPeriod(connection, options.receivables)
                         : currentPeriod(connection, options.receivables);
  requireInCalendar(connection, options.period);
  if (options.itemClass == 0) options.itemClass = options.receivables ? 1 : 8;
  requireItemClass(connection, options.itemClass);
  if (options.accounts.empty())
    options.accounts = controlAccounts(connection, {options.receivables, options.itemClass,
                                                    options.estimates || options.outsourcing});
  return options;
}

/// Account ids and their signs, "101,102" and "+,-".
void setAccounts(Dictionary& filter, ado::Connection& connection,
                 const std::vector<std::string>& accounts) {
  std::vector<std::string> numbers;
  std::string signs;
  for (const std::string& account : accounts) {
    const bool subtracted = account.starts_with('-');
    numbers.push_back(subtracted ? account.substr(1) : account);
    signs.append(signs.empty() ? "" : ",").append(subtracted ? "-" : "+");
  }
  filter.Set("AcctList", accountIds(connection, numbers));
  filter.Set("AcctLogic", signs);
}

/// `text` inside a literal of a statement.
std::string insideQuotes(std::string text) {
  for (std::size_t at = 0; (at = text.find('\'', at)) != std::string::npos; at += 2)
    text.insert(at, 1, '\'');
  return text;
}

void setItems(Dictionary& filter, ado::Connection& connection, const ReconcileOptions& options) {
  if (options.items.empty()) return;
  const NumberRange range = parseRange(options.items);
  requireItems(connection, options.itemClass, range);
  filter.Set("BItemNumber", insideQuotes(range.first));
  filter.Set("EItemNumber", insideQuotes(range.last));
}

DictionaryRef filterFor(ado::Connection& connection, const ReconcileOptions& options,
                        const Currency& currency) {
  auto filter = com::make<Dictionary>();
  filter->Set("bArp", options.receivables);
  filter->Set("bInitCheck", options.comparison == Comparison::initial);
  filter->Set("bShowDetail", options.detail);
  filter->Set("bUnPost", options.unposted);
  filter->Set("bZanGu", options.estimates);
  filter->Set("bWeiWai", options.outsourcing);
  filter->Set("BYear", options.period.year);
  filter->Set("BPeriod", options.period.period);
  filter->Set("CurrencyID", currency.id);
  filter->Set("ItemClass", options.itemClass);
  if (options.comparison != Comparison::closing) filter->Set("bChkForAdjust", options.byCurrency);
  setAccounts(*filter, connection, options.accounts);
  setItems(*filter, connection, options);
  return filter;
}

}  // namespace

Reconciliation prepared(const Session& session, const ReconcileOptions& options) {
  requireSense(options);
  ado::Connection& connection = session.connection();
  Reconciliation result{completed(connection, options), findCurrency(connection, options.currency),
                        nullptr, nullptr};
  result.filter = filterFor(connection, result.options, result.currency);
  return result;
}

void run(const Session& session, Reconciliation& reconciliation) {
  const auto checks = componentObject<_clsInitBalCheck>();
  const auto answer = reconciliation.options.comparison == Comparison::closing
                          ? checks->GetClosingAmtCheck(session.dsn(), reconciliation.filter)
                          : checks->GetInitAmtCheck(session.dsn(), reconciliation.filter);
  if (!answer) failFromErrorInfo("the reconciliation");
  reconciliation.rows = answer.as<ado::Recordset>();
}

Reconciliation reconcile(const Session& session, const ReconcileOptions& options) {
  Reconciliation result = prepared(session, options);
  run(session, result);
  return result;
}

}  // namespace velmora::cli
