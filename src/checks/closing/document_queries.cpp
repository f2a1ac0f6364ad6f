#include "checks/closing/document_queries.h"

#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

constexpr const char* kBillType = "inner join t_rp_billtype u1 on (v1.FClasstypeID = u1.FID)";
constexpr const char* kCurrency = "inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID)";

/// The entries of each invoice summed up.
std::string invoiceAmounts(const InvoiceTables& tables, std::string_view styleJoin,
                           std::string_view where) {
  const std::string invoice = tables.invoice, entry = tables.entry;
  return SqlLines()
      .line("( select v1.FInterID , sum(v2.FStdAmount) as FAmount, sum(v2.Famount) as FAmountFor")
      .line("    from " + invoice + " v1 inner join " + entry +
            " v2 on (v1.finterid = v2.finterid)")
      .lineIf(!styleJoin.empty(), styleJoin)
      .line(std::string("    ") + kCurrency)
      .line(where)
      .line("    group by v1.FInterID ) v2 on (v1.FInterID = v2.FInterID)")
      .text();
}

/// The lines of each receipt or payment summed up by account.
std::string receiptAmounts(std::string_view where) {
  return SqlLines()
      .line(
          "( select v1.FBillID, isnull(v2.FAccountID,0) as FAccountID,sum(v2.FSettleAmount) as "
          "Famount , sum(v2.FSettleAmountFor) as famountfor")
      .line(
          "    from t_rp_newreceivebill v1 inner join t_rp_ARBillOfSH v2 on (v1.FBillID = "
          "v2.FBillID)")
      .line(std::string("    ") + kCurrency)
      .line(where)
      .line("group by v1.FBillid, isnull(v2.FAccountID,0)")
      .line(") v2 on (v1.FBillID = v2.FBillID)")
      .text();
}

}  // namespace

std::string invoiceQuery(const QueryFilter& filter, const InvoiceTables& tables,
                         std::string_view styleJoin, std::string_view where,
                         std::string_view error) {
  return SqlLines()
      .line("select v1.FDate, u1." + filter.nameColumn() +
            " as FType, v1.FBillNo, v1.FcurrencyID,isnull(v1." + tables.accountColumn +
            ",0) as FAccountID, v2.FAmount , v2.FAmountFor," + filter.literal(error) +
            " as FerrInfo")
      .line("from " + std::string(tables.invoice) + " v1 inner join")
      .line(invoiceAmounts(tables, styleJoin, where))
      .line(kBillType)
      .line(kCurrency)
      .text();
}

std::string arpBillQuery(const QueryFilter& filter, std::string_view join, std::string_view where,
                         std::string_view error) {
  return SqlLines()
      .line("select v1.FDate , u1." + filter.nameColumn() +
            " as FType, v1.Fnumber as FbillNo , v1.FCurrencyID, isnull(v1.FAccountID,0) as "
            "FAccountID,v1.FAmount , v1.FAmountFor," +
            filter.literal(error) + " as FerrInfo")
      .line("from t_rp_arpbill v1 inner join t_rp_billType u1 on (v1.FClasstypeiD = u1.FID)")
      .line(kCurrency)
      .lineIf(!join.empty(), join)
      .line(where)
      .text();
}

std::string receiptQuery(const QueryFilter& filter, std::string_view where,
                         std::string_view error) {
  return SqlLines()
      .line("select v1.FDate , u1." + filter.nameColumn() +
            " as FType, v1.Fnumber as FbillNo , v1.FCurrencyID, v2.FAccountID,v2.FAmount , "
            "v2.FAmountFor," +
            filter.literal(error) + " as FerrInfo")
      .line("from t_rp_newreceivebill v1 inner join")
      .line(receiptAmounts(where))
      .line("inner join t_rp_billType u1 on (v1.FClasstypeiD = u1.FID)")
      .text();
}

}  // namespace velmora::closing
