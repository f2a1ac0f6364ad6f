#pragma once

#include <string>
#include <string_view>

namespace velmora::explain {

/// Why the ledger differs from receivables or payables. docs/operations.md tells each.
enum class Reason {
  noVoucher,
  noDocument,
  notPosted,
  otherPeriod,
  documentPeriod,
  otherAccount,
  otherContact,
  otherCurrency,
  otherAmount,
  subtractedAccount,
  rounding,
  documentAccount,
  transferWithoutVoucher,
  offsetWithoutVoucher,
  estimates,
  contactBalance,
  ledgerBalance,
  initialData,
  carriedForward,
  cancelledVoucher,
  notShown,
  unexplained,
  count
};

/// As JSON and CSV name it, "no-voucher".
std::string_view codeOf(Reason reason);
/// In simplified Chinese, the key of its translations: "单据未生成凭证".
std::string_view nameOf(Reason reason);

}  // namespace velmora::explain
