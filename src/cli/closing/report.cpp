#include "cli/closing/report.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <ostream>

#include "cli/output/counted.h"
#include "cli/output/result_rows.h"
#include "cli/reconcile/explained_report.h"

namespace velmora::cli {

namespace {

using explain::Amounts;
using explain::Decimal;
using explain::Measures;

/// How much of the difference is about what the check found.
struct Share {
  Amounts all, inFindings;
  std::size_t reasons = 0;
  std::size_t otherReasons = 0;  ///< that no finding shows in
};

Share shareOf(const ExplainedFindings& explained) {
  Share share;
  for (const explain::ExplainedRow& row : explained.explanation.rows)
    for (const explain::RowReason& reason : row.reasons) {
      ++share.reasons;
      share.all += reason.difference;
      if (explained.reasons.checksOf(reason).empty())
        ++share.otherReasons;
      else
        share.inFindings += reason.difference;
    }
  return share;
}

std::string orNothing(const Measures& measures) {
  const std::string text = amountsText(measures, 2);
  return text.empty() ? "0" : text;
}

void writeShare(std::ostream& out, const ExplainedFindings& explained) {
  const Share share = shareOf(explained);
  const char* side = explained.comparison.options.receivables ? "receivables" : "payables";
  if (share.reasons == 0) {
    out << "Ledger and " << side << " agree, account by account.\n\n";
    return;
  }
  out << "Ledger minus " << side << ", local currency: " << orNothing(share.all.local) << ".\n"
      << "Of it by what was found: " << orNothing(share.inFindings.local) << ".\n";
  if (share.otherReasons != 0)
    out << "By what no check finds: " << orNothing((share.all - share.inFindings).local) << " ("
        << counted(share.otherReasons, "reason") << "); velmora reconcile period --explain tells "
        << (share.otherReasons == 1 ? "it" : "them") << ".\n";
  out << '\n';
}

std::string placeOf(const explain::ComparedRow& row) {
  return row.itemNumber.empty() ? row.accountNumber : row.accountNumber + " " + row.itemNumber;
}

/// The findings, below each what it moves.
Findings remarked(const ClosingReport& report, const ExplainedFindings& explained) {
  Findings findings = report.findings;
  for (Finding& finding : findings) {
    const auto& reasons = explained.reasons.of(finding);
    if (!reasons) continue;
    for (const auto& [row, reason] : *reasons)
      finding.remarks.push_back(fmt::format(
          "{}: {} [{}]", placeOf(*row), bothCurrencies(reason->difference, row->decimals, false),
          explain::codeOf(reason->reason)));
    if (reasons->empty()) finding.remarks.emplace_back("moves nothing");
  }
  return findings;
}

std::vector<std::string_view> reasonCodes(const ExplainedFindings& explained,
                                          const Finding& finding) {
  std::vector<std::string_view> codes;
  if (const auto& reasons = explained.reasons.of(finding))
    for (const ReasonInRow& place : *reasons)
      if (const auto code = explain::codeOf(place.reason->reason);
          std::ranges::find(codes, code) == codes.end())
        codes.push_back(code);
  return codes;
}

void addReasons(Json& json, const Finding& finding, const ExplainedFindings& explained) {
  const auto moved = explained.reasons.moved(finding);
  json["difference"] = moved ? measuresJson(moved->local, 2) : Json();
  json["reasons"] = Json::array();
  const auto& reasons = explained.reasons.of(finding);
  if (!reasons) return;
  for (const auto& [row, reason] : *reasons)
    json["reasons"].push_back({{"account", row->accountNumber},
                               {"item", row->itemNumber},
                               {"reason", explain::codeOf(reason->reason)},
                               {"difference", measuresJson(reason->difference.local, 2)}});
}

}  // namespace

std::string ClosingReport::verdict() const {
  return fmt::format("{} {}: {}. The period may {}be closed.",
                     receivables ? "Receivables" : "Payables", toString(period),
                     countsText(findings), mayClose ? "" : "not ");
}

void writeReport(std::ostream& out, const ClosingReport& report, const Style& style,
                 const ExplainedFindings* explained) {
  writeFindings(out, explained == nullptr ? report.findings : remarked(report, *explained),
                "Check item", style);
  if (explained != nullptr) writeShare(out, *explained);
  const std::string verdict = report.verdict();
  out << (report.mayClose ? style.good(verdict) : style.serious(verdict)) << '\n';
}

void writeReportCsv(std::ostream& out, const ClosingReport& report,
                    const ExplainedFindings* explained) {
  ResultRows rows;
  rows.countColumn("FID").textColumn("FChkItem").textColumn("FChkType").textColumn("FChkInfo");
  if (explained != nullptr)
    for (const char* column : {"FOpening", "FDebit", "FCredit", "FBalance", "FReasons"})
      rows.textColumn(column);
  for (const Finding& finding : report.findings) {
    rows.add(static_cast<std::size_t>(finding.id))
        .add(finding.item)
        .add(finding.severityText)
        .add(finding.message);
    if (explained == nullptr) continue;
    const auto moved = explained->reasons.moved(finding);
    for (const Decimal Measures::*measure :
         {&Measures::opening, &Measures::debit, &Measures::credit, &Measures::balance})
      rows.add(moved ? shown(moved->local.*measure, 2).toString() : "");
    rows.add(fmt::format("{}", fmt::join(reasonCodes(*explained, finding), " ")));
  }
  writeCsv(out, *rows.finish());
}

void writeReportJson(std::ostream& out, const ClosingReport& report,
                     const ExplainedFindings* explained) {
  Json json;
  json["side"] = report.receivables ? "ar" : "ap";
  json["year"] = report.period.year;
  json["period"] = report.period.period;
  json["mayClose"] = report.mayClose;
  addFindings(json, report.findings);
  if (explained != nullptr) {
    for (std::size_t i = 0; i < report.findings.size(); ++i)
      addReasons(json["findings"][i], report.findings[i], *explained);
    json["comparison"] = comparisonJson(explained->comparison, summaryOf(explained->comparison));
    const Share share = shareOf(*explained);
    json["explained"] = {{"difference", measuresJson(share.all.local, 2)},
                         {"inFindings", measuresJson(share.inFindings.local, 2)},
                         {"otherReasons", share.otherReasons}};
  }
  out << jsonText(json) << '\n';
}

}  // namespace velmora::cli
