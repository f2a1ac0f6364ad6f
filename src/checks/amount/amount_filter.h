#pragma once

#include <cstdint>
#include <string>

#include "velmora/collections/dictionary.h"

namespace velmora::amount {

/// Which comparison a filter asks for.
enum class Mode {
  initial,  ///< initial data against opening balances
  closing,  ///< all contact balances of a side against a signed list of accounts
  period    ///< balances and movements of a period, account by account
};

/// What the builders of the amount reconciliation read from the caller's filter. Values
/// that are spliced into statements are kept as the caller's text: an absent one is empty
/// and fails where the statement runs.
struct AmountFilter {
  explicit AmountFilter(const collections::Dictionary& filter);

  Mode mode;
  bool bArp;           ///< receivables, else payables
  bool bShowDetail;    ///< per customer or supplier; absent reads as false here
  bool bChkForAdjust;  ///< rows per foreign currency
  bool bUnPost;        ///< the ledger's side takes unposted vouchers too
  bool bItemFilter;
  std::string year, period;
  std::string currency;  ///< id; "0": all currencies together
  std::int32_t currencyId;
  std::string itemClass;
  std::string accounts;          ///< AcctList: "101,102"
  std::string itemRange;         ///< strItemFilter, over t_item as t10
  std::string settlementBranch;  ///< strCheckInfoSQL

  bool initial() const noexcept { return mode == Mode::initial; }
  bool closing() const noexcept { return mode == Mode::closing; }
  /// One currency was asked for.
  bool oneCurrency() const noexcept { return !bChkForAdjust && currencyId > 0; }
  /// "1" for receivables, "0" for payables, as the documents' FRP columns hold it.
  const char* side() const noexcept { return bArp ? "1" : "0"; }
  /// The work table that the amounts are written into.
  const char* workTable() const noexcept { return bShowDetail ? "#amtdetail" : "#amtcheck"; }
};

}  // namespace velmora::amount
