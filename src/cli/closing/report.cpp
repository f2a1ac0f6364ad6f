#include "cli/closing/report.h"

#include <algorithm>
#include <ostream>
#include <span>

#include <fmt/format.h>

#include "cli/call/json_text.h"
#include "cli/output/display_width.h"

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

std::string counted(std::size_t count, std::string_view one, std::string_view several) {
  return fmt::format("{} {}", count, count == 1 ? one : several);
}

ado::FieldDefinition textField(std::string name) {
  ado::FieldDefinition field;
  field.name = std::move(name);
  field.type = ado::adVarWChar;
  field.definedSize = -1;
  return field;
}

ado::FieldDefinition countField(std::string name) {
  ado::FieldDefinition field;
  field.name = std::move(name);
  field.type = ado::adInteger;
  field.definedSize = 4;
  return field;
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
  ado::Rowset totals;
  totals.fields = {textField("Check item"), textField("Severity"), countField("Findings")};
  for (const Group group : groups) {
    totals.cells.emplace_back(group.front().item);
    totals.cells.emplace_back(group.front().severityText);
    totals.cells.emplace_back(static_cast<std::int32_t>(group.size()));
  }
  writeTable(out, *ado::Recordset::fromRowset(std::move(totals)), style);
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
  const std::string found =
      findings.empty()
          ? "no findings"
          : fmt::format("{}, {}, {}", counted(findings.size(), "finding", "findings"),
                        counted(count(Severity::serious), "serious error", "serious errors"),
                        counted(count(Severity::warning), "warning", "warnings"));
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
  ado::Rowset rows;
  rows.fields = {countField("FID"), textField("FChkItem"), textField("FChkType"),
                 textField("FChkInfo")};
  for (const Finding& finding : report.findings) {
    rows.cells.emplace_back(static_cast<std::int32_t>(finding.id));
    rows.cells.emplace_back(finding.item);
    rows.cells.emplace_back(finding.severityText);
    rows.cells.emplace_back(finding.message);
  }
  writeCsv(out, *ado::Recordset::fromRowset(std::move(rows)));
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
