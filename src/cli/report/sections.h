#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/closing/report.h"
#include "cli/period/report.h"
#include "cli/report/comparison_part.h"
#include "cli/report/findings_part.h"
#include "cli/settlement/settlement_run.h"

namespace velmora::cli {

/// One side of the books as it was checked and explained.
struct CheckedSide {
  ClosingReport closing;
  Reconciliation comparison;
  explain::Explanation explanation;
  FindingReasons reasons;
  Places places;

  /// `language` is that of findings and explanation.
  CheckedSide(ClosingReport found, Reconciliation compared, explain::Explanation explained,
              const std::string& language);
  // The parts lead to one another.
  CheckedSide(const CheckedSide&) = delete;
  CheckedSide& operator=(const CheckedSide&) = delete;
};

/// "ar" or "ap", where ids need it.
std::string sideCode(bool receivables);

/// Of a closing check's findings the vouchers on control accounts that have no document, or all
/// others: a dossier tells them apart.
Findings vouchersAlone(const Findings& findings, explain::Sentences& sentences);
Findings withoutVouchers(const Findings& findings, explain::Sentences& sentences);

/// A closing check's findings; `side`: with what they move, and those about vouchers left out.
report::Section closingSection(const ClosingReport& report, const CheckedSide* side,
                               explain::Sentences& sentences);
/// The vouchers on control accounts that have no document.
report::Section vouchersSection(const CheckedSide& side, explain::Sentences& sentences);
/// A comparison with its explanation.
report::Section comparisonSection(const Reconciliation& reconciliation,
                                  const explain::Explanation& explanation, const Places& places,
                                  explain::Sentences& sentences);
/// A comparison alone.
report::Section comparisonSection(const Reconciliation& reconciliation,
                                  const std::vector<explain::ComparedRow>& rows,
                                  explain::Sentences& sentences);
/// What a check of the account set's basic data found.
report::Section checkSection(const CheckReport& report, const std::string& title,
                             explain::Sentences& sentences);

/// Whether the period may be closed, in a sentence.
report::Paragraph verdictOf(const ClosingReport& report, explain::Sentences& sentences);
/// The same of a comparison.
report::Paragraph verdictOf(const Reconciliation& reconciliation,
                            const std::vector<explain::ComparedRow>& rows,
                            explain::Sentences& sentences);

/// What the findings, and the reasons that no finding shows, ask to be done; what prevents the
/// closing first.
report::References stepsOf(const ClosingReport& report, const CheckedSide* side,
                           explain::Sentences& sentences);

std::vector<explain::ComparedRow> rowsOf(const explain::Explanation& explanation);

}  // namespace velmora::cli
