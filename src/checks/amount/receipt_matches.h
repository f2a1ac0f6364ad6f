#pragma once

// Matches of receipts with invoices (ICHookRelations), as the estimates read them.

#include <string>

namespace velmora::amount {

/// Inventory receipts and subcontract receipts are numbered independently of each other:
/// which of the two an id belongs to, told from the transaction type in `column`.
std::string idSource(const std::string& column);

/// How entries of documents (b) find a derived table of matches under `alias`.
std::string onEntry(const std::string& alias);

/// The matched quantity of entries matched in part, as a derived table `alias` with
/// FHookQty. `condition` limits the matches and begins with " and "; `withPeriod` keeps
/// the periods of the matches apart as FYear and FPeriod.
std::string partialMatches(const std::string& condition, bool withPeriod, const std::string& alias);

/// Entries matched in full, once each, with FEquityHook 1 and the FYear and FPeriod of the
/// first such match. `condition` limits the matches, `period` the entries by that period;
/// both begin with " and " or are empty.
std::string fullMatches(const std::string& condition, const std::string& period,
                        const std::string& alias);

}  // namespace velmora::amount
