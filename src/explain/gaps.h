#pragma once

#include <map>
#include <vector>

#include "explain/explanation.h"
#include "explain/postings.h"
#include "velmora/ado/connection.h"

namespace velmora::explain {

/// Where a voucher's lines and the documents that name it do not cancel out in a row, or a
/// document has no voucher.
struct Gap {
  RowKey row;
  int voucher = 0;
  int source = 0, document = 0;  ///< without voucher
  int lines = 0, documents = 0;  ///< in this row
  Decimal ledger, own;           ///< what either has of the period; only with Sought::ofPeriod
  Amounts amounts;
};

/// A document as its contact record, a settlement or initial data tell it.
struct Document {
  DocumentRef ref;
  int source = 0;
  int voucher = 0;
  bool audited = true;
  bool hidden = false;  ///< row access keeps it from the user
  int item = 0, currency = 0;
  std::vector<int> accounts;  ///< a receipt has one a line; 0: none
  int usualAccount = 0;       ///< of the document's type
  Period business;            ///< of the invoice itself
  std::string itemNumber;
};

struct VoucherLine {
  int account = 0, item = 0, currency = 0;
  std::string accountNumber, itemNumber;
};

struct Voucher {
  VoucherRef ref;
  std::string origin;  ///< module that made it; empty: keyed by hand
  std::vector<VoucherLine> lines;
  std::vector<const Document*> documents;
};

/// Balances less what they are made of, of one row and time.
struct BalanceGap {
  RowKey row;
  int time = 0;
  Decimal debit, credit, debitFor, creditFor;
};

/// What the database tells of the differences.
struct Findings {
  std::vector<Gap> gaps;
  /// What documents post in each row, as a part of its difference: negative.
  std::map<RowKey, Amounts> documentSums;
  std::map<int, Voucher> vouchers;
  std::map<std::pair<int, int>, Document> documents;  ///< by source and id
};

Findings readFindings(ado::Connection& connection, const PostingTerms& terms,
                      Sought sought = Sought::gaps);

std::vector<BalanceGap> readContactBalanceGaps(ado::Connection& connection,
                                               const PostingTerms& terms);
std::vector<BalanceGap> readLedgerBalanceGaps(ado::Connection& connection,
                                              const PostingTerms& terms);

}  // namespace velmora::explain
