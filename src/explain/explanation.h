#pragma once

#include <optional>
#include <string>
#include <vector>

#include "explain/amounts.h"
#include "explain/reason.h"
#include "explain/scope.h"
#include "velmora/collections/date.h"

namespace velmora::explain {

/// What keeps the rows of a comparison apart; 0 where it does not.
struct RowKey {
  int account = 0;
  int item = 0;
  int currency = 0;
  auto operator<=>(const RowKey&) const = default;
};

/// A row of the comparison; totals of several rows are left out.
struct ComparedRow {
  RowKey key;
  std::string accountNumber, accountName, itemNumber, itemName;
  int currency = 0;  ///< that the row shows; 0: all together
  int decimals = 2;
  Amounts ledger, own;  ///< own: receivables or payables

  Amounts difference() const { return ledger - own; }
};

/// A document of receivables or payables, a settlement or initial data.
struct DocumentRef {
  std::string type;  ///< in the caller's language
  std::string number;
  int id = 0;
  collections::Date date;
  Period period;        ///< in which it counts
  int contactType = 0;  ///< FType of its contact record; 0 for a settlement
  /// That it is, or that made its contact record (bad debt, transfer, returned bill); 0: none.
  int settlement = 0;
};

struct VoucherRef {
  std::string word;
  std::string ledgerWord;  ///< in simplified Chinese, as the closing check shows it
  int number = 0;
  Period period;
  int id = 0;
  bool posted = false;
};

/// Another row that the same fault shows in.
struct OtherRow {
  std::string account, item;  ///< numbers
};

struct RowReason {
  Reason reason = Reason::unexplained;
  Amounts difference = {};  ///< its part of the row's difference
  std::optional<DocumentRef> document = {};
  int documents = 0;                               ///< how many there are; the first is told
  std::vector<DocumentRef> furtherDocuments = {};  ///< the voucher's others of the row's contact
  std::optional<VoucherRef> voucher = {};
  /// Document and voucher both stand alone; that they belong together is likely, no more.
  bool probable = false;
  std::optional<OtherRow> other = {};
  std::string text = {};  ///< what an accountant would say, with what to do
};

struct ExplainedRow {
  ComparedRow row;
  std::vector<RowReason> reasons;  ///< their differences add up to the row's
};

struct Explanation {
  /// All rows that were compared. One may agree and have reasons, which cancel out.
  std::vector<ExplainedRow> rows;
  /// Tables that the account set lacks and the reasons that could not be looked for.
  std::vector<std::string> notes;
};

}  // namespace velmora::explain
