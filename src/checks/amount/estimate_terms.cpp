#include "checks/amount/estimate_terms.h"

#include "common/access_filters.h"
#include "common/periods.h"
#include "velmora/com/class_table.h"

namespace velmora::amount {

using collections::Dictionary;

namespace {

/// A setting that is Null or missing is not the text "0".
bool readVoucherRule(const CDataSource& dataSource) {
  const auto profile = com::CreateObject("tirnarSystem.SystemProfile");
  const collections::Variant value = com::call(
      *profile, "GetSysProfile", dataSource.parser().PropsString(), "IC", "MakeZanGuVoucher", 0);
  return value.type() == collections::VarType::string && value.toText() == "0";
}

}  // namespace

EstimateTerms::EstimateTerms(const CDataSource& dataSource, const Dictionary& dFilter,
                             EstimateKind estimateKind, bool openingPart)
    : filter(dFilter),
      kind(estimateKind),
      opening(openingPart),
      voucherRule(readVoucherRule(dataSource)),
      inventoryStart(GetICStartDate(dataSource).toDateText()) {
  const std::int32_t periods = GetMaxPeriod(dataSource);
  yearLength = std::to_string(periods);
  period = std::to_string(dFilter.Value("BYear").toInt32() * periods +
                          dFilter.Value("BPeriod").toInt32());
  const auto access = DocumentAccessFilter(dataSource);
  if (!access->Value("NeedAccess").toBool()) return;
  accessFrom = access->Value("From").toText();
  accessCondition = " and " + access->Value("Where").toText();
}

std::string EstimateTerms::columns(const std::string& alias) const {
  return (filter.bShowDetail ? alias + "FCustomer," : "") +
         (filter.closing() ? "" : alias + "FAccountID,");
}

std::string EstimateTerms::grouping(const std::string& alias) const {
  std::string list = columns(alias);
  if (list.empty()) return list;
  list.pop_back();
  return "group by " + list;
}

std::string EstimateTerms::documentCondition() const {
  const std::string side = std::string(" and b.Frp = ") + filter.side();
  std::string condition = " where b.FItemClassID=" + filter.itemClass;
  if (filter.closing()) return condition + side;
  condition += " and b.FAccountID in (" + filter.accounts + ") ";
  return filter.bChkForAdjust ? condition : condition + side;
}

std::string EstimateTerms::fullCondition(const std::string& documentPeriod) const {
  std::string condition = documentCondition() + documentPeriod;
  if (filter.bChkForAdjust) condition += " and b.FCurrencyID > 1 ";
  if (filter.oneCurrency()) condition += " and b.FCurrencyID = " + filter.currency;
  if (filter.bItemFilter) condition += " and " + filter.itemRange;
  return condition + accessCondition;
}

std::string EstimateTerms::reducedCondition() const {
  std::string condition = documentCondition();
  if (filter.currencyId > 0) condition += " and b.FCurrencyID = " + filter.currency;
  return condition + accessCondition;
}

std::string EstimateTerms::fullJoins() const {
  return (filter.bItemFilter ? " join t_item t10 on b.FCustomer = t10.FItemID" : "") + accessFrom;
}

}  // namespace velmora::amount
