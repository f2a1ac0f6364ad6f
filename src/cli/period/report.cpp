#include "cli/period/report.h"

#include <ostream>

namespace velmora::cli {

namespace {

void writeTableReport(std::ostream& out, const CheckReport& report, const Style& style) {
  writeFindings(out, report.findings, report.itemTitle, style);
  const std::string& summary = report.summary;
  out << (report.blocked()          ? style.serious(summary)
          : report.findings.empty() ? style.good(summary)
                                    : style.warning(summary))
      << '\n';
}

void writeJsonReport(std::ostream& out, const CheckReport& report) {
  Json json;
  if (!report.side.empty()) json["side"] = report.side;
  json["passed"] = !report.blocked();
  addFindings(json, report.findings);
  out << jsonText(json) << '\n';
}

}  // namespace

void writeReport(std::ostream& out, std::ostream& err, const CheckReport& report, Format format) {
  if (format == Format::table) return writeTableReport(out, report, Style::forOutput());
  if (format == Format::csv) writeCsv(out, *report.rows);
  if (format == Format::json) writeJsonReport(out, report);
  err << report.summary << '\n';
}

}  // namespace velmora::cli
