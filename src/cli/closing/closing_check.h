#pragma once

#include <functional>
#include <future>
#include <string>
#include <vector>

#include "cli/closing/report.h"
#include "cli/session.h"

namespace velmora::cli {

struct ClosingOptions {
  bool receivables = true;
  Period period;  ///< 0: the current one
  /// Also the voucher findings that the account set does not demand.
  bool showAll = false;
  /// Ids of the control accounts whose vouchers must have documents, "101,102";
  /// empty: not checked.
  std::string accountIds;
};

/// A closing check's caption and query, for people who want to see the SQL.
struct CheckQuery {
  std::string caption, sql;
};

/// Called before each check with its caption, its number from 1 and their count.
using CheckProgress = std::function<void(const std::string& caption, int index, int count)>;

/// The period that `options` means. Raises Failure when the calendar does not know it.
Period periodToCheck(const Session& session, const ClosingOptions& options);

/// Runs the closing checks. `options.period` must be settled. Raises Failure telling
/// why they could not be run.
ClosingReport runClosingCheck(const Session& session, const ClosingOptions& options,
                              CheckProgress progress);

/// runClosingCheck in a thread of its own, on connections of its own, for what runs beside it.
/// `session` outlives it; it ends where the caller's CancellationScope asks for that.
std::future<ClosingReport> startClosingCheck(const Session& session, const ClosingOptions& options);

/// The queries that runClosingCheck runs, in order.
std::vector<CheckQuery> closingQueries(const Session& session, const ClosingOptions& options);

}  // namespace velmora::cli
