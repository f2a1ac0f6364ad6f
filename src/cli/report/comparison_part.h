#pragma once

#include <string>
#include <vector>

#include "cli/reconcile/reconciliation.h"
#include "cli/report/findings_part.h"
#include "explain/explanation.h"

namespace velmora::cli {

/// All rows that were compared: AR/AP, ledger and difference of each measure, side by side.
report::Table comparedTable(const Reconciliation& reconciliation,
                            const std::vector<explain::ComparedRow>& rows, const std::string& id,
                            explain::Sentences& sentences);

/// The rows that differ and those whose reasons cancel out, below each what makes up its
/// difference.
report::Table explainedTable(const Reconciliation& reconciliation,
                             const explain::Explanation& explanation, const std::string& id,
                             const Places& places, explain::Sentences& sentences);

/// How often each reason occurs and what it comes to.
report::Table reasonTotals(const explain::Explanation& explanation, const std::string& id,
                           explain::Sentences& sentences);

/// The differences by account and by period, and the reasons by amount.
std::vector<report::Chart> differenceCharts(const explain::Explanation& explanation,
                                            const std::string& id, const Places& places,
                                            explain::Sentences& sentences);

/// "2 of 30 rows differ; ledger minus receivables: debit 5.00 ..." in the report's language.
std::string differenceText(const Reconciliation& reconciliation,
                           const std::vector<explain::ComparedRow>& rows,
                           explain::Sentences& sentences);

/// Of all rows, in local currency.
explain::Measures differenceOf(const std::vector<explain::ComparedRow>& rows);

/// "Receivables" or "Payables" in the report's language.
std::string sideName(bool receivables, explain::Sentences& sentences);

}  // namespace velmora::cli
