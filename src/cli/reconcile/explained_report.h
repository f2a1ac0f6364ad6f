#pragma once

#include <iosfwd>
#include <map>

#include "cli/closing/finding_reasons.h"
#include "cli/reconcile/comparison_report.h"
#include "explain/explanation.h"

namespace velmora::cli {

/// How an explanation is shown.
struct ExplainedForm {
  bool all = false;          ///< also rows that agree
  bool onlyReasons = false;  ///< totals by reason alone
  /// The closing check of the period, whose items the reasons name; nothing: it was not run.
  const FindingReasons* checks = nullptr;
};

/// How often a reason occurs and what it comes to.
struct ReasonTotal {
  std::size_t count = 0;
  explain::Amounts amounts = {};
};
std::map<explain::Reason, ReasonTotal> totalsByReason(const explain::Explanation& explanation);

/// "debit -5.00, balance -5.00": the measures that are not zero.
std::string amountsText(const explain::Measures& measures, int decimals);

/// amountsText in local currency; that of the documents too where it alone differs or
/// `withOriginal` asks for it.
std::string bothCurrencies(const explain::Amounts& amounts, int decimals, bool withOriginal);

/// {"opening","debit","credit","balance"}, texts.
Json measuresJson(const explain::Measures& measures, int decimals);
/// A member of "reasons".
Json reasonJson(const explain::RowReason& reason, int decimals, bool withOriginal);

/// Each row with its reasons below it, then how often each reason occurs and what it comes to.
void writeExplained(std::ostream& out, const Reconciliation& reconciliation,
                    const explain::Explanation& explanation, const ExplainedForm& form,
                    const Style& style);

/// One line a reason.
void writeExplainedCsv(std::ostream& out, const Reconciliation& reconciliation,
                       const explain::Explanation& explanation, const ExplainedForm& form);

/// As docs/explanation.schema.json has it.
void writeExplainedJson(std::ostream& out, const Reconciliation& reconciliation,
                        const ComparisonSummary& summary, const explain::Explanation& explanation,
                        const ExplainedForm& form);

}  // namespace velmora::cli
