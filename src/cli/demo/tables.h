#pragma once

#include <map>
#include <utility>

#include "cli/demo/table_writer.h"

namespace velmora::cli::demo {

/// Hands out the keys of one table, from 1.
class Keys {
 public:
  int next() { return ++last_; }

 private:
  int last_ = 0;
};

/// The tables that documents are written to, all filled in one pass, with the keys
/// they hand out. The columns of each are listed where it is opened.
class Tables {
 public:
  explicit Tables(ado::ProviderConnection& connection);
  /// Stores the rows held back.
  void store();

  TableWriter otherBills, receipts, receiptLines, contacts, contactBalances;
  TableWriter initialDocuments, initialLines;
  TableWriter sales, saleLines, purchases, purchaseLines, expenses;
  TableWriter stockBills, stockLines, subcontractBills, subcontractLines, matches, estimateRecords;
  TableWriter bills, endorsements, discounts, billTransfers, billSettlements;
  TableWriter settlements, settledEntries;
  TableWriter vouchers, voucherLines, balances;

  Keys otherBillKeys, receiptKeys, contactKeys, initialKeys, saleKeys, purchaseKeys, expenseKeys,
      billKeys, billUseKeys, settlementRowKeys, settlementKeys, voucherKeys, matchKeys,
      estimateRecordKeys;
  /// Of both kinds of inventory receipts: estimate records name either by its key alone.
  Keys stockKeys;
  /// Voucher numbers, by period and voucher word.
  std::map<std::pair<int, int>, Keys> voucherNumbers;
};

}  // namespace velmora::cli::demo
