#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "cli/call/json_text.h"
#include "cli/output/result_writer.h"

namespace velmora::cli {

enum class Severity { serious, warning };

/// One line of what a check found.
struct Finding {
  int id = 0;
  std::string item;          ///< the check item or item class it belongs to
  std::string severityText;  ///< in the findings' language
  std::string message;
  Severity severity = Severity::warning;
  std::vector<std::string> remarks = {};  ///< lines below it in a report to read
};

using Findings = std::vector<Finding>;

/// The text of a serious error in `language`, from the suite's messages.
std::string seriousErrorText(const std::string& language);
/// What a finding's severity text means; `seriousText` is seriousErrorText.
Severity severityOf(const std::string& text, const std::string& seriousText);

std::size_t countOf(const Findings& findings, Severity severity);
/// "no findings" or "23 findings, 20 serious errors, 3 warnings".
std::string countsText(const Findings& findings);

/// Findings grouped by item and severity as they follow one another, then how many
/// each group has, items under the title `itemTitle`. Nothing without findings.
void writeFindings(std::ostream& out, const Findings& findings, const std::string& itemTitle,
                   const Style& style);
/// Adds "seriousErrors", "warnings", "items":[...] and "findings":[...].
void addFindings(Json& json, const Findings& findings);

}  // namespace velmora::cli
