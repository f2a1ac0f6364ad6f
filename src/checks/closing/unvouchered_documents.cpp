// Invoices, AR/AP documents, receipts and payments that no voucher was made for.

#include "checks/closing/document_queries.h"
#include "checks/closing/query_builders.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

constexpr const char* kNoVoucher = "没有生成凭证";

InvoiceTables invoiceTables(bool bArp) {
  return bArp ? InvoiceTables{"icsale", "icsaleEntry", "FAcctID"}
              : InvoiceTables{"icpurchase", "icpurchaseEntry", "FAcctID"};
}

/// Invoices without voucher; `condition` tells those that have reached AR/AP.
std::string invoices(const QueryFilter& filter, bool bArp, std::string_view condition) {
  return invoiceQuery(
      filter, invoiceTables(bArp), "",
      std::string(condition) + filter.periodCondition() + filter.andEffectiveFilter(), kNoVoucher);
}

std::string importedInvoices(const QueryFilter& filter, bool bArp) {
  return invoices(filter, bArp,
                  "    Where IsNull(v1.FVchInterID, 0) <= 0 and v1.FArapStatus & 1 = 1 and ");
}

std::string arpBills(const QueryFilter& filter) {
  return arpBillQuery(filter, "",
                      std::string("Where v1.Frp = ") + filter.side() +
                          " and v1.FStatus & 1 = 1 And IsNull(v1.FVoucherID, 0) <= 0  and " +
                          filter.periodCondition() + filter.andEffectiveFilter(),
                      kNoVoucher);
}

std::string receipts(const QueryFilter& filter) {
  return receiptQuery(filter,
                      std::string("Where v1.Frp = ") + filter.side() +
                          " and v1.FStatus & 1 = 1 And IsNull(v1.FVoucherID, 0) <= 0  And " +
                          filter.periodCondition() + filter.andEffectiveFilter(),
                      kNoVoucher);
}

}  // namespace

std::string GetUnVchArpBillStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  std::vector<std::string> parts;
  if (filter.bothSides() || filter.bArp()) parts.push_back(importedInvoices(filter, true));
  if (filter.bothSides() || !filter.bArp()) parts.push_back(importedInvoices(filter, false));
  parts.push_back(arpBills(filter));
  parts.push_back(receipts(filter));
  return joined(parts);
}

std::string GetUnVchInvoiceStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  return invoices(filter, filter.bArp(),
                  "    Where IsNull(v1.FVchInterID, 0) <= 0  and v1.FArapStatus & 1 > 0 and ");
}

}  // namespace velmora::closing
