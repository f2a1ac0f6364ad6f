// Operations on bills of exchange that no voucher was made for.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

/// What a holder does with a bill receivable before it is due.
struct BillOperation {
  const char* source;
  const char* amount;
  const char* account;
  std::string error;  ///< an SQL expression
};

/// The day of the operation (`date` is its column) lies in the period, or up to it.
std::string operationDate(const QueryFilter& filter, const std::string& date) {
  const std::string yearOf = "Year(" + date + ")", monthOf = "Month(" + date + ")";
  if (filter.upToPeriod())
    return " and ((" + yearOf + "=" + filter.year() + " and " + monthOf + " <=" + filter.period() +
           ") or " + yearOf + "<" + filter.year() + ")";
  return " and " + yearOf + "=" + filter.year() + " and " + monthOf + "=" + filter.period();
}

/// The joins and conditions that follow the source of every part; `operation` is the
/// alias of the operation's table.
std::string billConditions(const QueryFilter& filter, const std::string& operation,
                           const char* side) {
  const std::string item = filter.itemJoin("b.FCustomer");
  return SqlLines()
      .line(" inner join t_currency t10 on (b.FCurrencyID = t10.FCurrencyID)")
      .lineIf(!item.empty(), item)
      .line("  where " + operation + ".FVoucherID<=0 ")
      .line(std::string(" and b.FRp = ") + side)
      .line(operationDate(filter, operation + ".FDate") + filter.andEffectiveFilter())
      .text();
}

std::string operations(const QueryFilter& filter, const BillOperation& operation) {
  const std::string amount = operation.amount;
  return SqlLines()
      .line("select b.FSignDate as Fdate," + filter.literal("应收票据") +
            " as FType,b.FBillNo,d.FCurrencyID," + operation.account + " as FAccountID,round(" +
            amount + " * t10.FExchangeRate," + filter.localDecimal() + ") as FAmount," + amount +
            " as FAmountFor," + operation.error + " as FErrInfo")
      .line(operation.source)
      .line(billConditions(filter, "d", "1"))
      .text();
}

std::string endorsements(const QueryFilter& filter) {
  return operations(filter,
                    {"from t_rp_bill_endorse d inner join t_rp_bill b on (d.FBillID=b.FBillID)",
                     "d.FAmount", "d.FAccountID",
                     "(Case Ftype when 1 then " + filter.literal("背书凭证没有生成") + " else " +
                         filter.literal("背书退回凭证没有生成") + " end)"});
}

std::string discounts(const QueryFilter& filter) {
  return operations(filter,
                    {"from t_rp_bill_discount d inner join t_rp_bill b on (d.FBillID=b.FBillID)",
                     "d.FDiscountAmount", "d.FAccountID", filter.literal("贴现凭证没有生成")});
}

std::string transfers(const QueryFilter& filter) {
  return operations(filter,
                    {" from t_rp_bill_transfer d inner join t_rp_bill b on (d.FBillID=b.FBillID)",
                     "d.FExportAmount", "0", filter.literal("转让凭证没有生成")});
}

std::string settlements(const QueryFilter& filter) {
  const char* type = filter.bArp() ? "应收票据" : "应付票据";
  const char* error = filter.bArp() ? "收款凭证没有生成" : "付款凭证没有生成";
  return SqlLines()
      .line("select b.FSignDate as Fdate," + filter.literal(type) +
            " as FType,b.FBillNo,s.FCurrencyID,s.FAccountID,s.FAmount, s.FAmountFor," +
            filter.literal(error) + " as FErrInfo")
      .line(" from t_rp_bill_settle s inner join t_rp_bill b on (s.FBillID=b.FBillID) ")
      .line(billConditions(filter, "s", filter.side()))
      .text();
}

}  // namespace

std::string GetUnVchBillStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  std::vector<std::string> parts;
  if (filter.bArp()) parts = {endorsements(filter), discounts(filter), transfers(filter)};
  parts.push_back(settlements(filter));
  return joined(parts, " union ");
}

}  // namespace velmora::closing
