#include "cli/closing/report.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>
#include <span>

#include "cli/call/json_text.h"
#include "cli/output/counted.h"
#include "cli/output/display_width.h"
#include "cli/output/result_rows.h"

namespace velmora::cli {

namespace {

/// The findings of one check item, which follow one another.
using Group = std::span<const Finding>;

std::vector<Group> groupsOf(const std::vector<Finding>& findings) {
  std::vector<Group> groups;
  for (auto start = findings.begin(); start != findings.end();) {
    const auto end = std::find_if(start, findings.end(), [&](const Finding& finding) {
      return finding.item != start->item || finding.severityText != start->severityText;
    });
    groups.emplace_back(start, end);
    start = end;
  }
  return groups;
}

void writeGroup(std::ostream& out, Group group, const Style& style) {
  const Finding& first = group.front();
  const std::string severity = singleLine(first.severityText);
  out << style.heading(singleLine(first.item)) << " - "
      << (first.severity == Severity::serious ? style.serious(severity) : style.warning(severity))
      << '\n';
  const auto width = std::to_string(group.back().id).size();
  for (const Finding& finding : group)
    out << fmt::format("  {:>{}}  {}\n", finding.id, width, singleLine(finding.message));
  out << '\n';
}

void writeTotals(std::ostream& out, const std::vector<Group>& groups, const Style& style) {
  ResultRows totals;
  totals.textColumn("Check item").textColumn("Severity").countColumn("Findings");
  for (const Group group : groups)
    totals.add(group.front().item).add(group.front().severityText).add(group.size());
  writeTable(out, *totals.finish(), style);
  out << '\n';
}

Json findingJson(const Finding& finding) {
  Json json;
  json["id"] = finding.id;
  json["item"] = finding.item;
  json["severity"] = finding.severityText;
  json["serious"] = finding.severity == Severity::serious;
  json["message"] = finding.message;
  return json;
}

Json groupJson(Group group) {
  Json json;
  json["item"] = group.front().item;
  json["severity"] = group.front().severityText;
  json["serious"] = group.front().severity == Severity::serious;
  json["findings"] = group.size();
  return json;
}

}  // namespace

std::size_t ClosingReport::count(Severity severity) const {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [severity](const Finding& finding) { return finding.severity == severity; }));
}

std::string ClosingReport::verdict() const {
  const std::string found = findings.empty()
                                ? "no findings"
                                : fmt::format("{}, {}, {}", counted(findings.size(), "finding"),
                                              counted(count(Severity::serious), "serious error"),
                                              counted(count(Severity::warning), "warning"));
  return fmt::format("{} {}: {}. The period may {}be closed.",
                     receivables ? "Receivables" : "Payables", toString(period), found,
                     mayClose ? "" : "not ");
}

void writeReport(std::ostream& out, const ClosingReport& report, const Style& style) {
  const auto groups = groupsOf(report.findings);
  for (const Group group : groups) writeGroup(out, group, style);
  if (!groups.empty()) writeTotals(out, groups, style);
  const std::string verdict = report.verdict();
  out << (report.mayClose ? style.good(verdict) : style.serious(verdict)) << '\n';
}

void writeReportCsv(std::ostream& out, const ClosingReport& report) {
  ResultRows rows;
  rows.countColumn("FID").textColumn("FChkItem").textColumn("FChkType").textColumn("FChkInfo");
  for (const Finding& finding : report.findings)
    rows.add(static_cast<std::size_t>(finding.id))
        .add(finding.item)
        .add(finding.severityText)
        .add(finding.message);
  writeCsv(out, *rows.finish());
}

void writeReportJson(std::ostream& out, const ClosingReport& report) {
  Json json;
  json["side"] = report.receivables ? "ar" : "ap";
  json["year"] = report.period.year;
  json["period"] = report.period.period;
  json["mayClose"] = report.mayClose;
  json["seriousErrors"] = report.count(Severity::serious);
  json["warnings"] = report.count(Severity::warning);
  json["items"] = Json::array();
  for (const Group group : groupsOf(report.findings)) json["items"].push_back(groupJson(group));
  json["findings"] = Json::array();
  for (const Finding& finding : report.findings) json["findings"].push_back(findingJson(finding));
  out << jsonText(json) << '\n';
}

}  // namespace velmora::cli
