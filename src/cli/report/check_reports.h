#pragma once

#include <optional>
#include <string>

#include "cli/report/report_file.h"
#include "cli/report/sections.h"

namespace velmora::cli {

/// The closing check alone; `side`: with its explanation and the comparison.
report::Report closingReport(const Session& session, const ClosingReport& report,
                             const CheckedSide* side, const ReportFile& file,
                             explain::Sentences& sentences);

/// A comparison with the ledger alone; `explanation`: with the reasons, which name the items of
/// the closing check where `checks` is given.
report::Report comparisonReport(const Session& session, const Reconciliation& reconciliation,
                                const explain::Explanation* explanation,
                                const FindingReasons* checks, const ReportFile& file,
                                explain::Sentences& sentences);

/// A check of the account set's basic data alone.
report::Report basicCheckReport(const Session& session, const CheckReport& report,
                                const ReportFile& file, explain::Sentences& sentences);

}  // namespace velmora::cli
