#pragma once

// The queries of the closing checks, one builder each. They read the filter that
// GetCheckItemDict completes (see _clsInitBalCheck for the keys of the public ones) and
// answer T-SQL text; failures are raised.

#include <functional>
#include <string>

#include "frame/call/data_source.h"
#include "velmora/collections/dictionary.h"

namespace velmora::closing {

// Documents without voucher.
std::string GetUnVchArpBillStr(const collections::Dictionary& filter);
std::string GetUnVchInvoiceStr(const collections::Dictionary& filter);
std::string GetUnVchBillStr(const collections::Dictionary& filter);
/// Asks for the data source only when the query is limited to the period's dates.
std::string GetUnVchExtBillStr(const std::function<const CDataSource&()>& dataSource,
                               const collections::Dictionary& filter);

/// Unaudited documents of the period.
std::string GetUnAuditArpBillStr(const collections::Dictionary& filter);
/// Expense invoices of cash purchases that were not settled; stores bArp true when
/// absent.
std::string GetUnCheckExpInvoiceStr(collections::Dictionary& filter);
/// Receipts or payments of the cash module that nobody confirmed; stores bArp true when
/// absent.
std::string GetUnConfirmCashBillStr(collections::Dictionary& filter);

/// Documents whose control account is missing or not on their voucher.
std::string GetUnAccountArpBillStr(const collections::Dictionary& filter);

/// Vouchers on the accounts AcctList that belong to no document.
std::string GetNoBillVoucherStr(const collections::Dictionary& filter);

/// What the current periods of inventory and ledger say against closing; empty when
/// nothing does. Stores bArp true when absent.
std::string GetPeriodMatchStr(const CDataSource& dataSource, collections::Dictionary& filter);
/// Documents whose voucher lies in another period; stores bArp true when absent.
std::string GetUnPeriodVchBillStr(collections::Dictionary& filter);
/// Inventory-module invoices whose financial period differs from their AR/AP record's.
std::string GetUnPeriodICBillStr(const collections::Dictionary& filter);

}  // namespace velmora::closing
