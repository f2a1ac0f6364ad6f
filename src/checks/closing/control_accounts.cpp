// Documents whose control account is missing, or is not on the voucher made for them.

#include "checks/closing/document_queries.h"
#include "checks/closing/query_builders.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

constexpr const char* kNoAccount = "单据上没有设置往来科目";
constexpr const char* kOtherAccount = "单据上的往来科目与对应凭证不一致";

struct SideNames {
  InvoiceTables tables;
  const char* styleJoin;
  const char* excludedCode;    ///< sales or purchase style that needs no control account
  const char* excludedStyles;  ///< cash and estimate styles
};

constexpr SideNames kReceivables = {
    {"icsale", "icsaleentry", "fcussentacctid"},
    "      inner join t_submessage s5 on (v1.FSaleStyle = s5.finterid )",
    "s5.fid <> 'FXF01' and s5.FID <> '06' ",
    " and v1.FSaleStyle not in(100,20298)"};
constexpr SideNames kPayables = {{"icpurchase", "icpurchaseentry", "fcussentacctid"},
                                 "      inner join t_submessage s5 on (v1.FPOStyle = s5.finterid )",
                                 "s5.fid <> 'PO01'",
                                 " and v1.FpoStyle not in(251,20298)"};

/// The condition that the account column `account` is on no entry of the voucher.
std::string notOnVoucher(const std::string& account, const std::string& voucher) {
  return " and " + account +
         " not in (select FAccountID from  t_voucherentry where FVoucherID = " + voucher + ")";
}

std::string invoicesWithoutAccount(const QueryFilter& filter, const SideNames& side) {
  return invoiceQuery(
      filter, side.tables, side.styleJoin,
      SqlLines()
          .line(std::string("    Where IsNull(v1.fcussentacctid, 0) = 0 and v1.FArapStatus & 1 = "
                            "1 and ") +
                side.excludedCode)
          .line(side.excludedStyles)
          .line(" and " + filter.periodCondition() + filter.andEffectiveFilter())
          .text(),
      kNoAccount);
}

std::string invoicesOffVoucher(const QueryFilter& filter, const SideNames& side) {
  return invoiceQuery(
      filter, side.tables, "",
      SqlLines()
          .line("    Where IsNull(v1.fcussentacctid, 0) > 0 and IsNull(v1.FVchInterID, 0) > 0 and "
                "v1.FArapStatus & 1 = 1 and " +
                filter.periodCondition())
          .line("   " + notOnVoucher("v1.fcussentacctid", "v1.FVchInterID"))
          .line(side.excludedStyles + filter.andEffectiveFilter())
          .text(),
      kOtherAccount);
}

std::string auditedOfSide(const QueryFilter& filter) {
  return std::string("Where v1.Frp = ") + filter.side() + " and v1.FStatus & 1 = 1 ";
}

std::string arpBillsWithoutAccount(const QueryFilter& filter) {
  return arpBillQuery(
      filter,
      "    inner join t_rp_Contact tc on tc.FRPBillID=v1.FBillID and tc.FType in (1,2) and "
      "tc.FInvoiceType not in (3,4)",
      auditedOfSide(filter) + "And IsNull(v1.faccountid, 0) = 0  and " + filter.periodCondition() +
          filter.andEffectiveFilter(),
      kNoAccount);
}

std::string arpBillsOffVoucher(const QueryFilter& filter) {
  return arpBillQuery(
      filter, "",
      SqlLines()
          .line(auditedOfSide(filter))
          .line(" and v1.FVoucherID > 0 And IsNull(v1.faccountid, 0) > 0  and " +
                filter.periodCondition())
          .line(notOnVoucher("v1.FAccountID", "v1.FVoucherID") + filter.andEffectiveFilter())
          .text(),
      kOtherAccount);
}

std::string receiptsWithoutAccount(const QueryFilter& filter) {
  return receiptQuery(filter,
                      SqlLines()
                          .line(auditedOfSide(filter))
                          .line("  And IsNull(v2.FAccountID, 0) = 0  And " +
                                filter.periodCondition() + filter.andEffectiveFilter())
                          .text(),
                      kNoAccount);
}

std::string receiptsOffVoucher(const QueryFilter& filter) {
  return receiptQuery(
      filter,
      SqlLines()
          .line(auditedOfSide(filter))
          .line("  and v1.FVoucherID > 0 And IsNull(v2.FAccountID, 0) > 0  And " +
                filter.periodCondition())
          .line(notOnVoucher("v2.FAccountID", "v1.FVoucherID") + filter.andEffectiveFilter())
          .text(),
      kOtherAccount);
}

}  // namespace

std::string GetUnAccountArpBillStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  const SideNames& side = filter.bArp() ? kReceivables : kPayables;
  return joined({invoicesWithoutAccount(filter, side), invoicesOffVoucher(filter, side),
                 arpBillsWithoutAccount(filter), arpBillsOffVoucher(filter),
                 receiptsWithoutAccount(filter), receiptsOffVoucher(filter)});
}

}  // namespace velmora::closing
