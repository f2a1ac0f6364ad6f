// Whether the current periods of inventory and ledger let AR/AP close its own.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/messages.h"
#include "common/sql_lines.h"
#include "common/system_profile.h"

namespace velmora::closing {

namespace {

struct FiscalPeriod {
  std::int32_t year, period;
};

bool isBefore(const FiscalPeriod& a, const FiscalPeriod& b) {
  return a.year < b.year || (a.year == b.year && a.period < b.period);
}

FiscalPeriod currentPeriodOf(const CDataSource& dataSource, std::string_view category) {
  return {readProfileNumber(dataSource, "CurrentYear", category),
          readProfileNumber(dataSource, "CurrentPeriod", category)};
}

std::string inventoryFinding(const FiscalPeriod& inventory, const FiscalPeriod& arp,
                             const std::string& module, const std::string& language) {
  if (inventory.year == 0)
    return LoadMessage("物流系统当前年份取值错误，可能是没有启用物流系统。", language);
  if (!isBefore(inventory, arp)) return {};
  return LoadMessageFmt("物流系统当前期间小于%1，建议在%2之前结账。", language, {module, module});
}

std::string ledgerFinding(const FiscalPeriod& ledger, const FiscalPeriod& arp,
                          const std::string& module, const std::string& language) {
  if (ledger.year == 0)
    return LoadMessage("总账系统当前年份取值错误，可能是没有启用总账系统。", language);
  if (!isBefore(arp, ledger)) return {};
  return LoadMessageFmt("总账系统当前期间大于%1，建议在%2之后结账。", language, {module, module});
}

}  // namespace

std::string GetPeriodMatchStr(const CDataSource& dataSource, collections::Dictionary& dFilter) {
  if (!dFilter.Lookup("bArp")) dFilter.Set("bArp", true);
  const QueryFilter filter(dFilter);
  const FiscalPeriod arp = {dFilter.Value("BYear").toInt32(), dFilter.Value("BPeriod").toInt32()};
  const FiscalPeriod inventory = currentPeriodOf(dataSource, "IC");
  const FiscalPeriod ledger = currentPeriodOf(dataSource, "GL");
  const std::string module =
      LoadMessage(filter.bArp() ? "应收系统" : "应付系统", filter.language());

  std::vector<std::string> findings;
  for (const std::string& finding : {inventoryFinding(inventory, arp, module, filter.language()),
                                     ledgerFinding(ledger, arp, module, filter.language())})
    if (!finding.empty()) findings.push_back("select " + quoted(finding) + " as FErrInfo ");
  return joined(findings);
}

}  // namespace velmora::closing
