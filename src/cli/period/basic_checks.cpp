#include "cli/period/basic_checks.h"

#include "cli/component.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

namespace {

using collections::Dictionary;

/// The columns of a result that a finding is made of.
struct FindingColumns {
  const char *item, *severity, *message;
};

Findings findingsOf(ado::Recordset& rows, const FindingColumns& columns,
                    const std::string& seriousText) {
  Findings findings;
  const std::size_t id = rows.fieldIndex("FID"), item = rows.fieldIndex(columns.item),
                    severity = rows.fieldIndex(columns.severity),
                    message = rows.fieldIndex(columns.message);
  for (; !rows.EOF_(); rows.MoveNext()) {
    const std::string severityText = cellText(rows.GetValue(severity));
    findings.push_back({rows.GetValue(id).toInt32(), cellText(rows.GetValue(item)), severityText,
                        cellText(rows.GetValue(message)), severityOf(severityText, seriousText)});
  }
  return findings;
}

std::string accountSummary(const CheckReport& report) {
  const std::string counts = "Account check: " + countsText(report.findings) + ". ";
  if (report.blocked()) return counts + "The accounts of some item classes cannot be checked.";
  if (report.findings.empty()) return counts + "Every item has valid accounts.";
  return counts + "Some items lack valid accounts.";
}

}  // namespace

CheckReport runInitCheck(const std::string& dsn, bool receivables, const std::string& language) {
  const auto checks = componentObject<_clsInitBalCheck>();
  auto filter = com::make<Dictionary>();
  filter->Set("bArp", receivables);
  com::Ref<com::IUnknown> answer;
  if (!checks->CheckInitData(dsn, filter, answer)) failFromErrorInfo("the initial-data check");
  CheckReport report;
  report.rows = answer.as<ado::Recordset>();
  report.findings =
      findingsOf(*report.rows, {"FChkItem", "FChkType", "FChkInfo"}, seriousErrorText(language));
  report.itemTitle = "Check item";
  report.side = receivables ? "ar" : "ap";
  report.summary = std::string(receivables ? "Receivables: " : "Payables: ") +
                   countsText(report.findings) + ". The initialisation may " +
                   (report.blocked() ? "not " : "") + "be ended.";
  return report;
}

CheckReport runAccountCheck(const std::string& dsn, const std::string& language) {
  const auto checks = componentObject<_clsCheck>();
  CheckReport report;
  report.rows = checks->CheckValidAccount(dsn).as<ado::Recordset>();
  if (!report.rows) failFromErrorInfo("the account check");
  report.findings =
      findingsOf(*report.rows, {"FKey", "FErrType", "FErrInfo"}, seriousErrorText(language));
  report.itemTitle = "Item class";
  report.summary = accountSummary(report);
  return report;
}

}  // namespace velmora::cli
