#pragma once

#include <map>
#include <string>

#include "cli/closing/finding_reasons.h"
#include "cli/findings/findings.h"
#include "explain/sentences.h"
#include "report/model.h"

namespace velmora::cli {

/// Names for the places of a report that lead to one another: the findings of a side and the
/// reasons of its comparison.
class Places {
 public:
  /// Of findings alone.
  explicit Places(std::string side) : side_(std::move(side)) {}
  /// `side` keeps the places of two sides apart: "ar" or "ap". Both arguments outlive this.
  Places(std::string side, const explain::Explanation& explanation);
  /// Findings and reasons that are about the same documents lead to one another.
  void connect(const Findings& findings, const FindingReasons& reasons);

  /// The reasons name the check items of findings that the report does not show.
  void nameItems(const FindingReasons& reasons);

  std::string of(const Finding& finding) const;
  std::string of(const explain::RowReason& reason) const { return reasons_.at(&reason); }
  /// Findings that the reason's documents are in.
  report::References findingsOf(const explain::RowReason& reason) const;
  report::References reasonsOf(const Finding& finding, explain::Sentences& sentences) const;

 private:
  std::string side_;
  std::map<const explain::RowReason*, std::string> reasons_;
  std::map<const explain::RowReason*, report::References> findings_;
  std::map<int, std::vector<ReasonInRow>> reasonsOfFindings_;  // by the finding's number
};

/// What a table of findings is headed with.
struct FindingsHead {
  std::string id, title;
  std::string item;  ///< what the findings' items are
};

/// The findings, one a row. With `reasons` also by how much each moves the comparison with the
/// ledger, and the reasons that say so; `places` then knows them.
report::Table findingsTable(const Findings& findings, const FindingsHead& head,
                            const Places& places, const FindingReasons* reasons,
                            explain::Sentences& sentences);

/// How many findings each item has.
report::Chart findingsChart(const Findings& findings, const std::string& id, const Places& places,
                            explain::Sentences& sentences);

/// "2 serious errors, 1 warning" in the report's language.
std::string countsOf(const Findings& findings, explain::Sentences& sentences);
/// What is worst among them.
report::Tone toneOf(const Findings& findings);

}  // namespace velmora::cli
