#include "cli/reconcile/explained.h"

#include <sstream>

#include "cli/failure.h"
#include "velmora/com/cancellation.h"
#include "velmora/com/error.h"

namespace velmora::cli {

namespace {

std::vector<explain::ScopeAccount> accountsOf(const collections::Dictionary& filter) {
  std::istringstream ids(filter.Value("AcctList").toText()),
      signs(filter.Value("AcctLogic").toText());
  std::vector<explain::ScopeAccount> accounts;
  for (std::string id, sign; std::getline(ids, id, ',');) {
    std::getline(signs, sign, ',');
    accounts.push_back({std::stoi(id), sign == "-"});
  }
  return accounts;
}

explain::Scope scopeOf(const Session& session, const Reconciliation& reconciliation) {
  const ReconcileOptions& options = reconciliation.options;
  explain::Scope scope;
  scope.comparison = options.comparison;
  scope.receivables = options.receivables;
  scope.period = {options.period.year, options.period.period};
  scope.accounts = accountsOf(*reconciliation.filter);
  scope.itemClass = options.itemClass;
  scope.currency = reconciliation.currency.id;
  scope.byCurrency = options.byCurrency;
  scope.detail = options.detail;
  scope.unposted = options.unposted;
  scope.language = session.language();
  scope.callerString = session.dsn();
  if (options.items.empty()) return scope;
  const NumberRange range = parseRange(options.items);
  scope.firstItem = range.first;
  scope.lastItem = range.last;
  return scope;
}

/// Errors are for the person at the screen.
template <class Ask>
auto told(Ask ask) {
  try {
    return ask();
  } catch (const com::Error& error) {
    throw Failure(error.description());
  }
}

}  // namespace

std::future<explain::Inquiry> startInquiry(const Session& session, const Reconciliation& prepared) {
  return std::async(
      std::launch::async,
      [&session, scope = scopeOf(session, prepared)](const std::stop_token& cancelled) {
        const com::CancellationScope cancellation(cancelled);
        return explain::Inquiry(session.connection(), scope);
      },
      com::CurrentCancellation());
}

explain::Explanation explained(const Session& session, const Reconciliation& reconciliation,
                               std::future<explain::Inquiry> inquiry) {
  ado::RecordsetRef without;
  if (reconciliation.options.estimates || reconciliation.options.outsourcing) {
    Reconciliation plain = reconciliation;
    plain.filter = reconciliation.filter->Clone();
    plain.filter->Set("bZanGu", false);
    plain.filter->Set("bWeiWai", false);
    run(session, plain);
    without = plain.rows;
  }
  return told([&] { return inquiry.get().explain(*reconciliation.rows, without.get()); });
}

std::vector<explain::ComparedRow> comparedRows(const Session& session,
                                               const Reconciliation& reconciliation) {
  return explain::comparedRows(scopeOf(session, reconciliation), *reconciliation.rows);
}

std::vector<explain::Match> matched(const Session& session, const Reconciliation& reconciliation) {
  const explain::Scope scope = scopeOf(session, reconciliation);
  return told([&] { return explain::matches(session.connection(), scope); });
}

}  // namespace velmora::cli
