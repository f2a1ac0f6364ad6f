#pragma once

#include "cli/report/report_file.h"
#include "cli/settlement/settlement_run.h"

namespace velmora::cli {

/// A settlement: what became of each side, the pairs, and the documents as they are afterwards.
/// `faults` is what does not add up.
report::Report settlementReport(const SettlementRun& run, const std::vector<std::string>& faults,
                                const std::string& language, const ReportFile& file,
                                explain::Sentences& sentences);

}  // namespace velmora::cli
