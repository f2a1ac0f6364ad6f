#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/reconcile/lookup.h"
#include "cli/session.h"
#include "explain/scope.h"
#include "velmora/collections/dictionary.h"

namespace velmora::cli {

using explain::Comparison;

/// A reconciliation as a person asks for it; what is absent takes the account set's own.
struct ReconcileOptions {
  Comparison comparison = Comparison::period;
  bool receivables = true;
  Period period;
  std::string currency = "0";
  int itemClass = 0;  ///< 0: customers or suppliers, by side
  /// Account numbers; a leading "-" subtracts one in the closing comparison.
  std::vector<std::string> accounts;
  std::string items;  ///< "FROM..TO"; empty: all
  bool detail = true;
  bool unposted = false, estimates = false, outsourcing = false, byCurrency = false;
};

/// What a comparison answered.
struct Reconciliation {
  ReconcileOptions options;  ///< completed
  Currency currency;
  ado::RecordsetRef rows;
  collections::DictionaryRef filter;  ///< with the statements that were run
};

/// The comparison with its options completed, not yet run. Raises UsageError for options that
/// contradict one another and Failure naming what the account set does not have.
Reconciliation prepared(const Session& session, const ReconcileOptions& options);

/// Runs a prepared comparison. Raises Failure telling why it could not be run.
void run(const Session& session, Reconciliation& reconciliation);

/// Both. Raises as they do.
Reconciliation reconcile(const Session& session, const ReconcileOptions& options);

}  // namespace velmora::cli
