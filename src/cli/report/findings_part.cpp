#include "cli/report/findings_part.h"

#include <algorithm>
#include <fmt/format.h>

#include "cli/reconcile/comparison_report.h"

namespace velmora::cli {

namespace {

using explain::Measures;
using report::Kind;
using report::Tone;

constexpr int kDecimals = 2;  // of sums over rows, as everywhere

Tone toneOf(Severity severity) {
  return severity == Severity::serious ? Tone::serious : Tone::warning;
}

std::string nameOf(const ReasonInRow& place, explain::Sentences& sentences) {
  const std::string& account = place.row->accountNumber;
  const std::string& item = place.row->itemNumber;
  return fmt::format("{}{}{}: {}", account, account.empty() || item.empty() ? "" : " ", item,
                     sentences.of(explain::nameOf(place.reason->reason)));
}

report::Row rowOf(const Finding& finding, const Places& places, const FindingReasons* reasons,
                  explain::Sentences& sentences) {
  report::Row row;
  row.id = places.of(finding);
  row.tone = toneOf(finding.severity);
  row.cells = {std::int64_t{finding.id}, finding.item, finding.severityText, finding.message};
  if (reasons == nullptr) return row;
  const auto moved = reasons->moved(finding);
  for (const auto measure :
       {&Measures::opening, &Measures::debit, &Measures::credit, &Measures::balance})
    row.cells.push_back(moved ? report::Cell(shown(moved->local.*measure, kDecimals))
                              : report::Cell());
  if (moved)
    row.cells.emplace_back(places.reasonsOf(finding, sentences));
  else
    row.cells.emplace_back(sentences.of("无法确定"));
  return row;
}

}  // namespace

Places::Places(std::string side, const explain::Explanation& explanation) : side_(std::move(side)) {
  std::size_t number = 0;
  for (const explain::ExplainedRow& row : explanation.rows)
    for (const explain::RowReason& reason : row.reasons)
      reasons_[&reason] = fmt::format("{}-reason-{}", side_, ++number);
}

void Places::connect(const Findings& findings, const FindingReasons& reasons) {
  for (const Finding& finding : findings) {
    const auto& found = reasons.of(finding);
    if (!found) continue;
    reasonsOfFindings_[finding.id] = *found;
    for (const ReasonInRow& place : *found)
      findings_[place.reason].push_back(
          {fmt::format("{} {}", finding.item, finding.id), of(finding)});
  }
}

void Places::nameItems(const FindingReasons& reasons) {
  for (const auto& [reason, place] : reasons_)
    for (const std::string& item : reasons.checksOf(*reason))
      findings_[reason].push_back({item, {}});
}

std::string Places::of(const Finding& finding) const {
  return fmt::format("{}-finding-{}", side_, finding.id);
}

report::References Places::findingsOf(const explain::RowReason& reason) const {
  const auto found = findings_.find(&reason);
  return found == findings_.end() ? report::References() : found->second;
}

report::References Places::reasonsOf(const Finding& finding, explain::Sentences& sentences) const {
  report::References references;
  const auto found = reasonsOfFindings_.find(finding.id);
  if (found == reasonsOfFindings_.end()) return references;
  for (const ReasonInRow& place : found->second)
    references.push_back({nameOf(place, sentences), of(*place.reason)});
  return references;
}

report::Table findingsTable(const Findings& findings, const FindingsHead& head,
                            const Places& places, const FindingReasons* reasons,
                            explain::Sentences& sentences) {
  report::Table table;
  table.id = head.id;
  table.title = head.title;
  table.columns = {{.name = sentences.of("序号"), .kind = Kind::count, .key = true},
                   {.name = head.item, .choice = true},
                   {.name = sentences.of("严重程度"), .choice = true},
                   {.name = sentences.of("内容")}};
  if (reasons != nullptr) {
    for (const char* measure : {"期初余额", "借方", "贷方", "余额"})
      table.columns.push_back({.name = sentences.of(measure),
                               .kind = Kind::amount,
                               .group = sentences.of("对差异的影响"),
                               .difference = true});
    table.columns.push_back({.name = sentences.of("差异原因")});
  }
  table.rows.reserve(findings.size());
  for (const Finding& finding : findings)
    table.rows.push_back(rowOf(finding, places, reasons, sentences));
  return table;
}

report::Chart findingsChart(const Findings& findings, const std::string& id, const Places& places,
                            explain::Sentences& sentences) {
  report::Chart chart{id, sentences.of("各检查项的问题数"), {}};
  for (const Finding& finding : findings) {
    auto bar = std::ranges::find(chart.bars, finding.item, &report::Bar::label);
    if (bar == chart.bars.end()) {
      chart.bars.push_back({finding.item, 0, {}, toneOf(finding.severity), places.of(finding)});
      bar = std::prev(chart.bars.end());
    }
    bar->amount += 1;
    bar->tone = std::max(bar->tone, toneOf(finding.severity));
  }
  for (report::Bar& bar : chart.bars) bar.text = bar.amount.toString();
  return chart;
}

std::string countsOf(const Findings& findings, explain::Sentences& sentences) {
  if (findings.empty()) return sentences.of("没有发现问题。");
  return sentences.of("严重错误 %1 个，警告 %2 个。",
                      {std::to_string(countOf(findings, Severity::serious)),
                       std::to_string(countOf(findings, Severity::warning))});
}

Tone toneOf(const Findings& findings) {
  if (findings.empty()) return Tone::good;
  return countOf(findings, Severity::serious) == 0 ? Tone::warning : Tone::serious;
}

}  // namespace velmora::cli
