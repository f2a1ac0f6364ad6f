// Receipts and payments that the cash module sent and nobody confirmed.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/messages.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

struct CashDocument {
  const char* name;
  const char* classType;
};

constexpr CashDocument kReceipt = {"收款单", "1006004"};
constexpr CashDocument kPayment = {"付款单", "1006002"};

}  // namespace

std::string GetUnConfirmCashBillStr(collections::Dictionary& dFilter) {
  if (!dFilter.Lookup("bArp")) dFilter.Set("bArp", true);
  const QueryFilter filter(dFilter);
  const CashDocument& document = filter.bArp() ? kReceipt : kPayment;
  return SqlLines()
      .line("select " + quoted(LoadMessage(document.name, filter.language()) + "[") + "+FNumber+" +
            quoted("]:" + LoadMessage("单据没有确认", filter.language())) +
            " as FErrInfo from t_RP_NewReceiveBill RB")
      .line(
          " left join t_perioddate tp on RB.FtransDate_CN>=tp.FStartDate and "
          "RB.FtransDate_CN<=tp.FEndDate")
      .line(std::string(" where RB.FClassTypeID_CN=") + document.classType)
      .line(" and RB.FConfirm=0 ")
      .line(" and  tp.FYear = " + filter.year())
      .line(" and tp.FPeriod=" + filter.period())
      .text();
}

}  // namespace velmora::closing
