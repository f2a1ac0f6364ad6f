#pragma once

#include "cli/reconcile/reconciliation.h"
#include "explain/explain.h"

namespace velmora::cli {

/// Why the rows of `reconciliation` differ, in `language`. A comparison with estimates is run
/// once more without them. Raises Failure for books that cannot be explained.
explain::Explanation explained(const Session& session, const Reconciliation& reconciliation);

/// The rows of `reconciliation` without its totals.
std::vector<explain::ComparedRow> comparedRows(const Session& session,
                                               const Reconciliation& reconciliation);

/// The documents and vouchers of its period one to one; it is narrowed to one account.
std::vector<explain::Match> matched(const Session& session, const Reconciliation& reconciliation);

}  // namespace velmora::cli
