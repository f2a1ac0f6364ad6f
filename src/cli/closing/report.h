#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "cli/account_set.h"
#include "cli/output/result_writer.h"

namespace velmora::cli {

enum class Severity { serious, warning };

struct Finding {
  int id = 0;
  std::string item;
  std::string severityText;  ///< in the findings' language
  std::string message;
  Severity severity = Severity::warning;
};

/// What a closing check found.
struct ClosingReport {
  bool receivables = true;
  Period period;
  bool mayClose = false;
  std::vector<Finding> findings;

  std::size_t count(Severity severity) const;
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
