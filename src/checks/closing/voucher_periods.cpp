// Documents whose voucher lies in another period.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "checks/closing/type_names.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

constexpr TypeName kTypeNames[] = {
    {1, std::nullopt, "其他应收单"},
    {2, std::nullopt, "其他应付单"},
    {3, std::nullopt, "销售发票"},
    {4, std::nullopt, "采购发票"},
    {5, 0, "收款单"},
    {6, 0, "付款单"},
    {5, 1, "预收单"},
    {6, 1, "预付单"},
    {5, -1, "应收退款单"},
    {6, -1, "应付退款单"},
    {8, std::nullopt, "坏账"},
    {9, std::nullopt, "转账单据"},
};

}  // namespace

std::string GetUnPeriodVchBillStr(collections::Dictionary& dFilter) {
  if (!dFilter.Lookup("bArp")) dFilter.Set("bArp", true);
  const QueryFilter filter(dFilter);
  return SqlLines()
      .line("select t1.FDate, t1.FNumber as FBillNO, ")
      .line(typeNameCase(filter, "t1", kTypeNames) + " as FType,")
      .line("t1.fid,t2.Fvoucherid, " + filter.literal("单据期间与对应凭证不一致") + " as FErrInfo ")
      .line("from t_rp_contact t1,t_voucher t2")
      .line(
          "Where t1.FVoucherID = t2.FVoucherID And (t1.FPeriod <> t2.FPeriod or t1.FYear <> "
          "t2.FYear ) ")
      .line(" and t1.FIsinit = 0 and t1.FYear = " + filter.year())
      .line(" and t1.Fperiod = " + filter.period())
      .line(std::string(" and t1.FRp = ") + filter.side())
      .text();
}

}  // namespace velmora::closing
