#pragma once

#include <iosfwd>
#include <string>

#include "cli/account_set.h"
#include "cli/findings/findings.h"

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

/// Findings grouped by check item, the totals, and the verdict.
void writeReport(std::ostream& out, const ClosingReport& report, const Style& style);
/// One line a finding: FID, FChkItem, FChkType, FChkInfo.
void writeReportCsv(std::ostream& out, const ClosingReport& report);
/// {"side","year","period","mayClose","seriousErrors","warnings","items":[...],"findings":[...]}.
void writeReportJson(std::ostream& out, const ClosingReport& report);

}  // namespace velmora::cli
