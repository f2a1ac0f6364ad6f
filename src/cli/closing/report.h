#pragma once

#include <iosfwd>
#include <string>

#include "cli/account_set.h"
#include "cli/closing/finding_reasons.h"
#include "cli/findings/findings.h"
#include "cli/reconcile/reconciliation.h"

namespace velmora::cli {

/// What a closing check found.
struct ClosingReport {
  bool receivables = true;
  Period period;
  bool mayClose = false;
  Findings findings;

  /// "Receivables 2009-03: 23 findings, 20 serious errors, 3 warnings. The period may
  /// not be closed."
  std::string verdict() const;
};

/// What the findings have to do with the comparison with the ledger.
struct ExplainedFindings {
  const Reconciliation& comparison;
  const explain::Explanation& explanation;
  const FindingReasons& reasons;
};

/// Findings grouped by check item, the totals, and the verdict. Explained: below each finding
/// what it moves in which row of the comparison.
void writeReport(std::ostream& out, const ClosingReport& report, const Style& style,
                 const ExplainedFindings* explained = nullptr);
/// One line a finding: FID, FChkItem, FChkType, FChkInfo; explained: FOpening, FDebit, FCredit,
/// FBalance over all rows, empty where that cannot be told, and the reasons.
void writeReportCsv(std::ostream& out, const ClosingReport& report,
                    const ExplainedFindings* explained = nullptr);
/// {"side","year","period","mayClose","seriousErrors","warnings","items":[...],"findings":[...]};
/// explained: each finding's "difference" and "reasons", "comparison" and "explained".
void writeReportJson(std::ostream& out, const ClosingReport& report,
                     const ExplainedFindings* explained = nullptr);

}  // namespace velmora::cli
