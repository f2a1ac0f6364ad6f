#pragma once

#include <memory>
#include <vector>

#include "explain/explanation.h"
#include "velmora/ado/connection.h"

namespace velmora::explain {

/// Explains `rows`, which the comparison of `scope` answered (GetInitAmtCheck or
/// GetClosingAmtCheck). For a comparison with estimates or outsourced processing,
/// `withoutEstimates` is what it answers without both.
///
/// The reasons of a row add up to its difference, to the last decimal, whatever the books hold:
///
///   ledger - own = (ledger - its postings) + (postings of the ledger - documents)
///                + (documents - own)
///
/// where the middle is taken voucher by voucher. Reads; but for the work table #ExplainGap of
/// its connection nothing is written. Raises what the database raises.
Explanation explain(ado::Connection& connection, const Scope& scope, ado::Recordset& rows,
                    ado::Recordset* withoutEstimates = nullptr);

/// A voucher's lines and the documents that name it, in one period.
struct Match {
  RowReason reason;     ///< document and voucher; reason and text only where they differ
  Decimal ledger, own;  ///< of the period, signed, in local currency

  bool agrees() const { return reason.difference.isZero(); }
};

/// What the database tells of the differences of a comparison, whose rows it does without: it can
/// be asked beside the comparison itself, on a connection of its own.
class Inquiry {
 public:
  /// Asks. Raises what the database raises. `connection` outlives this.
  Inquiry(ado::Connection& connection, const Scope& scope);
  Inquiry(Inquiry&& other) noexcept;
  Inquiry& operator=(Inquiry&& other) noexcept;
  ~Inquiry();

  /// As explain() for the same scope, once.
  Explanation explain(ado::Recordset& rows, ado::Recordset* withoutEstimates = nullptr);

 private:
  class Explainer;
  friend std::vector<Match> matches(ado::Connection& connection, const Scope& scope);
  std::unique_ptr<Explainer> explainer_;
};

/// What ledger and documents have in the period of `scope`, which is narrowed to one account
/// (and contact), voucher by voucher in the order of the vouchers; documents without one last.
std::vector<Match> matches(ado::Connection& connection, const Scope& scope);

/// The rows of a comparison without its totals, in their order.
std::vector<ComparedRow> comparedRows(const Scope& scope, ado::Recordset& rows);

}  // namespace velmora::explain
