#pragma once

#include <iosfwd>
#include <string>

#include "cli/findings/findings.h"

namespace velmora::cli {

/// What a check of the account set's basic data found.
struct CheckReport {
  ado::RecordsetRef rows;  ///< as the component answered them
  Findings findings;
  std::string itemTitle;  ///< what the findings' items are
  std::string summary;    ///< one line
  /// The side that was checked, "ar" or "ap"; empty for a check without sides.
  std::string side;

  bool blocked() const { return countOf(findings, Severity::serious) != 0; }
};

/// In `format` on `out`: the table ends with the summary; csv is the component's rows;
/// json is {"side","passed","seriousErrors","warnings","items":[...],"findings":[...]}.
/// The summary of csv and json goes to `err`.
void writeReport(std::ostream& out, std::ostream& err, const CheckReport& report, Format format);

}  // namespace velmora::cli
