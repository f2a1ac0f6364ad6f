#pragma once

#include <future>

#include "cli/reconcile/reconciliation.h"
#include "explain/explain.h"

namespace velmora::cli {

/// Asks why the rows of a prepared comparison differ, in a thread of its own, while it runs. The
/// session's connection, which it uses, is left alone until the answer is there.
std::future<explain::Inquiry> startInquiry(const Session& session, const Reconciliation& prepared);

/// Why the rows of `reconciliation` differ, in the session's language, as its `inquiry` tells. A
/// comparison with estimates is run once more without them. Raises Failure for books that cannot
/// be explained.
explain::Explanation explained(const Session& session, const Reconciliation& reconciliation,
                               std::future<explain::Inquiry> inquiry);

/// The rows of `reconciliation` without its totals.
std::vector<explain::ComparedRow> comparedRows(const Session& session,
                                               const Reconciliation& reconciliation);

/// The documents and vouchers of its period one to one; it is narrowed to one account.
std::vector<explain::Match> matched(const Session& session, const Reconciliation& reconciliation);

}  // namespace velmora::cli
