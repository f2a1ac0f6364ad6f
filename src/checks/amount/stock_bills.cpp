// Inventory documents whose goods or work arrived before the supplier's invoice.

#include "checks/amount/query_builders.h"
#include "checks/amount/receipt_matches.h"
#include "common/sql_lines.h"

namespace velmora::amount {

namespace {

/// Where the columns of a kind of document come from.
struct DocumentTables {
  const char *bill, *entry;
  const char *tranType, *itemClass;
  const char *supplier, *account, *quantity, *amount;
  const char *condition, *idSource;
};

/// Receipts of the inventory module; what they are worth differs.
constexpr DocumentTables inventoryReceipts(const char* amount, const char* condition) {
  return {.bill = "ICStockBill",
          .entry = "ICStockBillEntry",
          .tranType = "b.FTranType",
          .itemClass = "(case when b.FTranType = 21 then 1 else 8 end)",
          .supplier = "b.FSupplyID",
          .account = "b.FCussentAcctID",
          .quantity = "a.FQty",
          .amount = amount,
          .condition = condition,
          .idSource = "0"};
}

constexpr DocumentTables kPurchaseReceipts = inventoryReceipts("a.FAmount", "b.ftrantype = 1");
constexpr DocumentTables kProcessingReceipts =
    inventoryReceipts("a.fprocesscost", "b.ftrantype = 5");
constexpr DocumentTables kSubcontractReceipts = {.bill = "ICShop_SubcIn",
                                                 .entry = "ICShop_SubcInEntry",
                                                 .tranType = "1002523",
                                                 .itemClass = "8",
                                                 .supplier = "b.FSupplierID",
                                                 .account = "b.FAcctID",
                                                 .quantity = "a.FBasePassQty",
                                                 .amount = "a.FAmount",
                                                 .condition = "b.FBillType=0",
                                                 .idSource = "1002523"};

/// One row an entry, in the period of the voucher or else of the document's date.
std::string documents(const DocumentTables& t) {
  const std::string tranType = t.tranType;
  SqlLines query;
  query.line("Select " + tranType + " as FClassTypeID, b.FInterID, a.FEntryID, 0 as FID,")
      .line("isnull(v.FYear,p.FYear) as FYear, isnull(v.FPeriod,p.FPeriod) as FPeriod, 0 as FRP,")
      .line(std::string(t.account) +
            " as FAccountID, 0 as FType, b.FDate, "
            "isnull(v.FDate,b.FDate) as FFincDate, b.FBillNo as FNumber,")
      .line(std::string(t.itemClass) + " as FItemClassID, b.FVchInterID as FVoucherID, " +
            tranType + " as FTranType,")
      .line(std::string(t.supplier) +
            " as FCustomer, b.FDeptID as FDepartment, b.FEmpID as "
            "FEmployee, 1 as FCurrencyID, 1 as FExchangeRate,")
      .line(std::string(t.quantity) + " as FQty, " + t.amount + " as FAmount, " + t.amount +
            " as FAmountFor")
      .line(std::string("From ") + t.bill + " b inner join " + t.entry +
            " a on b.FInterID=a.FInterID")
      .line("left join t_voucher v on b.FVchInterID=v.FVoucherID")
      .line("left join t_perioddate p on b.FDate>=p.FStartDate and b.FDate<=p.FEndDate")
      .line(std::string("Where ") + t.condition + " and b.FCancellation<>1")
      .line(
          "and not exists (select 1 from ICHookRelations h where h.FIBTag=4 and "
          "h.FIBInterID=b.FInterID and " +
          idSource("h.FTranType") + "=" + t.idSource + ")");
  return query.text();
}

}  // namespace

std::string GetStockBillSql(EstimateKind kind) {
  if (kind == EstimateKind::goodsReceipts) return documents(kPurchaseReceipts);
  return joined({documents(kProcessingReceipts), documents(kSubcontractReceipts)}, " UNION ALL ");
}

}  // namespace velmora::amount
