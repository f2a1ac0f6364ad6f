#pragma once

#include <iosfwd>
#include <vector>

#include "cli/output/terminal.h"
#include "cli/reconcile/explained.h"

namespace velmora::cli {

/// One period of both ledgers of an account, or of one contact on it.
struct TracedPeriod {
  Period period;
  explain::ComparedRow row;
  /// What changed the difference in this period: came in, or was put right.
  std::vector<explain::RowReason> reasons;
};

struct Trace {
  ReconcileOptions options;  ///< account and contact
  std::vector<TracedPeriod> periods;
};

/// The comparison of `options` (one account, one contact or none) in every period from `since`
/// to its own. Raises as reconcile, and UsageError when `since` is later.
Trace trace(const Session& session, const ReconcileOptions& options, Period since);

/// The ledgers side by side, then what came in and what was put right.
void writeTrace(std::ostream& out, const Trace& trace, const Style& style);
void writeTraceJson(std::ostream& out, const Trace& trace);
/// A line a period.
void writeTraceCsv(std::ostream& out, const Trace& trace);

/// The documents and vouchers of one period, one to one.
ado::RecordsetRef matchRows(const std::vector<explain::Match>& matches);
/// [{"ledger","own", and what a member of "reasons" has; "reason" null where they agree}].
void writeMatchesJson(std::ostream& out, const std::vector<explain::Match>& matches);

}  // namespace velmora::cli
