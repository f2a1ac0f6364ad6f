// Expense invoices of cash purchases that were not settled in their period.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/sql_lines.h"

namespace velmora::closing {

std::string GetUnCheckExpInvoiceStr(collections::Dictionary& dFilter) {
  if (!dFilter.Lookup("bArp")) dFilter.Set("bArp", true);
  const QueryFilter filter(dFilter);
  return SqlLines()
      .line("select t1.fname as FType,v1.fcheckstatus, v1.fnumber as FBillNO, u1.ftrantype, " +
            filter.literal("现购类费用发票需要在当期核销完毕") + " as FErrInfo,")
      .line("u1.FPOStyle, u1.FSaleStyle,u1.FInvType")
      .line(
          "from t_rp_arpbill v1 inner join icexpenses u1 on (v1.fsource in (4, 8) and "
          "v1.fsourceid = u1.finterid)")
      .line("inner join ictransactiontype t1 on (u1.ftrantype = t1.fid)")
      .line("inner join t_submessage t2 on (u1.FPOStyle = t2.finterid )")
      .line("left join t_submessage t3 on (u1.finvtype = t3.finterid )")
      .line(
          "where (u1.ftrantype = 77 or (u1.ftrantype = 78 and isnull(u1.finvtype,0) > 0 and "
          "t3.ftypeid = 104 and t3.fid = 'xf01'))")
      .line("and t2.ftypeid = 162 and t2.fid = 'PO01'")
      .line("and isnull(v1.fcheckstatus,0) <> 1")
      .line(" and " + filter.periodCondition())
      .text();
}

}  // namespace velmora::closing
