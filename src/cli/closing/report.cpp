#include "cli/closing/report.h"

#include <fmt/format.h>
#include <ostream>

#include "cli/output/result_rows.h"

namespace velmora::cli {

std::string ClosingReport::verdict() const {
  return fmt::format("{} {}: {}. The period may {}be closed.",
                     receivables ? "Receivables" : "Payables", toString(period),
                     countsText(findings), mayClose ? "" : "not ");
}

void writeReport(std::ostream& out, const ClosingReport& report, const Style& style) {
  writeFindings(out, report.findings, "Check item", style);
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
  addFindings(json, report.findings);
  out << jsonText(json) << '\n';
}

}  // namespace velmora::cli
