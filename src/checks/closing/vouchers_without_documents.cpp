// Ledger vouchers on the control accounts that no AR/AP document stands behind.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/sql_lines.h"
#include "frame/call/text.h"

namespace velmora::closing {

namespace {

/// The accounts to watch as the inside of an IN list. Without any, no voucher is on one
/// of them.
std::string watchedAccounts(const collections::Dictionary& dFilter) {
  const std::string accounts = dFilter.Value("AcctList").toText();
  return trimmed(accounts).empty() ? "null" : accounts;
}

}  // namespace

std::string GetNoBillVoucherStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  return SqlLines()
      .line("select v1.FDate," + filter.literal("凭证") +
            " as FType, v1.FYear, v1.FPeriod, g1.FName as FGroupName, "
            "v1.FNumber,v1.FExplanation,v1.FDebitTotal as Famount,")
      .line(filter.literal("没有应收应付系统对应的单据") + " as FErrInfo ")
      .line(" from t_voucher v1 inner join t_vouchergroup g1 on (v1.Fgroupid = g1.Fgroupid)")
      .line(" inner join (select v1.fvoucherid, min(fentryid) as fentryid ")
      .line(
          "        from t_voucher v1 inner join t_voucherentry v2 on (v1.fvoucherid = "
          "v2.fvoucherid) ")
      .line("        where v2.faccountid in (" + watchedAccounts(dFilter) + ") and " +
            filter.periodCondition())
      .line("        group by v1.fvoucherid ) v2 on (v1.fvoucherid = v2.fvoucherid) ")
      .line("  where ( isnull(v1.finternalind,'') not in ('ar','ap','Industry'))")
      .line("  and v1.fvoucherid not in (select fvoucherid from t_rp_contact)")
      .text();
}

}  // namespace velmora::closing
