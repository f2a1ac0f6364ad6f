#include "cli/findings/findings.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>
#include <span>

#include "cli/output/counted.h"
#include "cli/output/result_rows.h"
#include "report/display_width.h"

namespace velmora::cli {

namespace {

/// The findings of one item and severity, which follow one another.
using Group = std::span<const Finding>;

std::vector<Group> groupsOf(const Findings& findings) {
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
  const std::string severity = report::singleLine(first.severityText);
  out << style.heading(report::singleLine(first.item)) << " - "
      << (first.severity == Severity::serious ? style.serious(severity) : style.warning(severity))
      << '\n';
  const auto width = std::to_string(group.back().id).size();
  for (const Finding& finding : group) {
    out << fmt::format("  {:>{}}  {}\n", finding.id, width, report::singleLine(finding.message));
    for (const std::string& remark : finding.remarks)
      out << fmt::format("  {:>{}}    {}\n", "", width, report::singleLine(remark));
  }
  out << '\n';
}

void writeTotals(std::ostream& out, const std::vector<Group>& groups, const std::string& itemTitle,
                 const Style& style) {
  ResultRows totals;
  totals.textColumn(itemTitle).textColumn("Severity").countColumn("Findings");
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

std::size_t countOf(const Findings& findings, Severity severity) {
  return static_cast<std::size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

std::string countsText(const Findings& findings) {
  if (findings.empty()) return "no findings";
  return fmt::format("{}, {}, {}", counted(findings.size(), "finding"),
                     counted(countOf(findings, Severity::serious), "serious error"),
                     counted(countOf(findings, Severity::warning), "warning"));
}

void writeFindings(std::ostream& out, const Findings& findings, const std::string& itemTitle,
                   const Style& style) {
  const auto groups = groupsOf(findings);
  for (const Group group : groups) writeGroup(out, group, style);
  if (!groups.empty()) writeTotals(out, groups, itemTitle, style);
}

void addFindings(Json& json, const Findings& findings) {
  json["seriousErrors"] = countOf(findings, Severity::serious);
  json["warnings"] = countOf(findings, Severity::warning);
  json["items"] = Json::array();
  for (const Group group : groupsOf(findings)) json["items"].push_back(groupJson(group));
  json["findings"] = Json::array();
  for (const Finding& finding : findings) json["findings"].push_back(findingJson(finding));
}

}  // namespace velmora::cli
