// Documents that nobody has audited.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "checks/closing/type_names.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

constexpr TypeName kTypeNames[] = {
    {1, std::nullopt, "应收单"},
    {2, std::nullopt, "应付单"},
    {3, std::nullopt, "销售发票"},
    {4, std::nullopt, "采购发票"},
    {5, -1, "应收退款单"},
    {5, 0, "收款单"},
    {5, 1, "预收单"},
    {6, -1, "应付退款单"},
    {6, 0, "付款单"},
    {6, 1, "预付单"},
};

}  // namespace

std::string GetUnAuditArpBillStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  const std::string item = filter.itemJoin("v1.FCustomer");
  return SqlLines()
      .line(" select  v1.FDate,v1.FNumber as FBillNO,t10.FCurrencyID,v1.FAmount, v1.FAmountFor,")
      .line(typeNameCase(filter, "v1", kTypeNames) + " as FType,")
      .line(filter.literal("单据没有审核") + " as FErrInfo")
      .line("from t_RP_Contact v1 ")
      .line(" inner join t_Currency t10 on (v1.FCurrencyID = t10.FcurrencyID) ")
      .lineIf(!item.empty(), item)
      .line(" where ( v1.FStatus & 1 )=0 ")
      .line(" and   ( v1.FStatus & 16 )=0 ")
      .lineIf(!filter.bothSides(), std::string(" and v1.FRP=") + filter.side())
      .line(" and v1.FYear=" + filter.year())
      .line(" and FPeriod=" + filter.period())
      .text();
}

}  // namespace velmora::closing
