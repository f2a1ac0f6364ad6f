#pragma once

#include <string>

#include "cli/demo/documents.h"

namespace velmora::cli::demo {

/// A part of a document: what its voucher posts to a control account, and the account
/// the document itself names for it.
struct ControlLine {
  int account = 0;
  int named = 0;
  Amount amount;
};

/// The account that a document names where its voucher posts to `account`.
int namedAccount(const SideTerms& side, int account, const Departure& departure);

/// What makes the voucher of a document: `increase` when it makes the partner owe, or
/// be owed, more.
struct VoucherForm {
  int counterAccount = 0;
  bool increase = true;
  VoucherGroup group = VoucherGroup::kJournal;
  std::string_view explanation = {};
};

/// Writes the voucher of a document, unless it departs from having one. Returns the
/// voucher's id or 0.
int addDocumentVoucher(Books& books, const Occasion& occasion, std::span<const ControlLine> lines,
                       const VoucherForm& form, const Departure& departure);

/// Counts a document in the contact balances, unless it is not audited.
void postContactLines(Books& books, const Occasion& occasion, std::span<const ControlLine> lines,
                      bool increase, const Departure& departure);

collections::Date financialDate(const Occasion& occasion, const Departure& departure);

/// The contact record of a document, but for what it refers to.
Contact contactOf(const Occasion& occasion, int type, std::string_view number, Amount amount,
                  const Departure& departure);

/// A document known by its contact record's id and its own.
Document documentOf(const Contact& contact, int id, int bill);

}  // namespace velmora::cli::demo
