#pragma once

#include <iosfwd>
#include <string>

#include "cli/call/json_text.h"
#include "cli/output/result_writer.h"
#include "cli/reconcile/reconciliation.h"

namespace velmora::cli {

/// How much a reconciliation differs. Totals are not counted again.
struct ComparisonSummary {
  std::size_t rows = 0, differing = 0;
  /// "5 of 33 rows differ: opening 0.00, debit -12.50, credit 0.00, balance -12.50
  /// (ledger minus receivables, local currency)".
  std::string text;
};

/// `value` with at least `decimals` decimals and none of its digits lost.
collections::Decimal shown(const collections::Decimal& value, int decimals);

ComparisonSummary summaryOf(const Reconciliation& reconciliation);

/// Leaves only the rows that differ in some column in view.
void keepDifferences(Reconciliation& reconciliation);

/// Opening balance, movements and balance of each row, AR/AP, ledger and difference side
/// by side with the decimals of the row's currency.
void writeComparison(std::ostream& out, const Reconciliation& reconciliation, const Style& style);

/// {"comparison","side","year","period","currency","accounts","compared","differing"}.
Json comparisonJson(const Reconciliation& reconciliation, const ComparisonSummary& summary);

/// {"comparison","side","year","period","currency","accounts","compared","differing",
/// "rows"}; `rows` holds every column of each row in view, amounts as text.
void writeComparisonJson(std::ostream& out, const Reconciliation& reconciliation,
                         const ComparisonSummary& summary);

}  // namespace velmora::cli
