#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/findings/findings.h"
#include "explain/explanation.h"

namespace velmora::cli {

/// A reason and the row of the comparison that it is in.
struct ReasonInRow {
  const explain::ComparedRow* row;
  const explain::RowReason* reason;
};

/// What the closing check found and why the ledger differs, brought together: a finding and a
/// reason meet when both are about the same document, settlement or voucher.
///
/// Messages tell documents by their number alone. Where documents of different types with a
/// reason share one, the finding gets none of them.
class FindingReasons {
 public:
  /// `findings` of the explained period and `explanation`, both in `language`. The
  /// explanation outlives this.
  FindingReasons(const Findings& findings, const explain::Explanation& explanation,
                 const std::string& language);

  /// The reasons that the finding shows in; none: it moves nothing. Nothing at all where that
  /// cannot be told: the finding names no document or a number of two, or row access keeps
  /// reasons back.
  const std::optional<std::vector<ReasonInRow>>& of(const Finding& finding) const;
  /// What the finding moves the comparison by, over all rows; nothing as for of().
  std::optional<explain::Amounts> moved(const Finding& finding) const;
  /// The check items that name the reason's document, voucher or settlement.
  const std::vector<std::string>& checksOf(const explain::RowReason& reason) const;

 private:
  std::map<int, std::optional<std::vector<ReasonInRow>>> byFinding_;  // by its number
  std::map<const explain::RowReason*, std::vector<std::string>> checks_;
};

}  // namespace velmora::cli
