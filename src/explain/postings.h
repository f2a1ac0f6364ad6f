#pragma once

// What a comparison is made of, document by document: T-SQL for the SQL Server of the day
// (2008 on) and the embedded database.
//
// A posting has a sign: the ledger's count for it, those of receivables or payables against
// it, so that their sum is what the ledger has more. Its columns are
//   FVoucherID   voucher, 0: none
//   FSource      kContactSource ... where there is no voucher, else 0
//   FDocumentID  contact record or settlement where there is no voucher, else 0
//   FAcctID, FItemID, FCurrencyID   the row of the comparison, 0 where it is not kept apart
//   FLines, FDocuments              1 for a voucher line, or for a document
//   FOpening, FDebit, FCredit, FBalance and the same with "For" (document currency)

#include <string>

#include "explain/row_access.h"
#include "explain/scope.h"

namespace velmora::explain {

inline constexpr int kContactSource = 1, kSettlementSource = 2, kInitialSource = 3;

/// The scope with what the account set says.
struct PostingTerms {
  Scope scope;
  int periodsOfYear = 12;
  /// Where both ledgers begin: the initial data stand before it.
  Period first;
  /// Offsets of advances move amounts of their own: they have vouchers.
  bool offsetsCount = true;
  // Whether the account set has the tables of these; all reasons but a few do without.
  bool hasSettlements = true, hasInvoices = true, hasDocumentTypes = true;
  /// Of documents, and of initial data.
  RowAccess access, initialAccess;

  int time(Period period) const { return period.year * periodsOfYear + period.period; }
  int checked() const { return time(scope.period); }
};

/// Which sums of postings are looked for.
enum class Sought {
  gaps,     ///< those that do not cancel out
  ofPeriod  ///< all that have a posting in the period
};

/// Creates #ExplainGap: the postings of a voucher, or of a document without one, summed up in
/// a row; with FLedger and FOwn, what ledger and documents have of the period by itself.
std::string createGaps();
/// Fills it.
std::string insertGaps(const PostingTerms& terms, Sought sought);
/// The documents' postings by row: FAcctID, FItemID, FCurrencyID and the amounts. The ledger's
/// are these and the gaps.
std::string documentSums(const PostingTerms& terms);
/// Those of receivables or payables by row and time (FTime), against the contact balances of
/// that period; only where they differ, as contact balance less documents. FDebit and FCredit
/// as contact balances have them.
std::string contactBalanceGaps(const PostingTerms& terms);
/// The same for the ledger: ledger balance less voucher lines.
std::string ledgerBalanceGaps(const PostingTerms& terms);

}  // namespace velmora::explain
