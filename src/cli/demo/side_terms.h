#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "cli/demo/demo.h"

namespace velmora::cli::demo {

/// Series of document numbers; each side has its own prefix for each.
enum class Series {
  kInvoice,
  kOtherBill,
  kExpense,
  kReceipt,
  kAdvance,
  kRefund,
  kBillOfExchange,
  kTransfer,
  kWriteOff,
  kBadDebt,
  kReturnedBill,
  kInitial,
  kCount
};
inline constexpr auto kSeriesCount = static_cast<std::size_t>(Series::kCount);

/// What a document type is called by in t_rp_BillType, by FPre for receipts.
struct ClassTypes {
  int invoice, otherBill, receipt, advance, refund, initialInvoice, initialAdvance;
};

/// What differs between receivables and payables. In payables a receipt is a payment
/// and an invoice a purchase invoice; control accounts grow on the credit side.
struct SideTerms {
  Side side;
  int frp;
  int itemClass;
  std::string_view internalIndicator;
  // types of contact records
  int otherBillType, invoiceType, receiptType;
  ClassTypes classTypes;
  int cashModuleClass;  ///< class type in the cash module of receipts or payments
  // control accounts
  int trade, advance, other;
  int goodsEstimate, processingEstimate;  ///< payables only; 0 in receivables
  // accounts on the other side of the entry
  int invoiceCounter, otherCounter, bills;
  int creditStyle;  ///< way of selling or purchasing: on credit
  // expense invoices
  int expenseTransaction, expenseSource;
  std::array<std::string_view, kSeriesCount> prefixes;

  bool receivables() const { return side == Side::kReceivables; }
};

const SideTerms& termsOf(Side side);

/// The accounts that the side keeps by partner.
std::vector<int> controlAccounts(const SideTerms& side);

}  // namespace velmora::cli::demo
