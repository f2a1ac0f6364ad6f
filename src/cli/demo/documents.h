#pragma once

#include "cli/demo/books.h"

namespace velmora::cli::demo {

/// When a document is made, and with whom.
struct Occasion {
  const Partner& partner;
  int period = 0;
  int day = 1;

  collections::Date date() const { return dateIn(period, day); }
};

/// How a document departs from the rule that it is audited, has a voucher of its own
/// period with its control account on it, and that all its dates agree.
struct Departure {
  bool unaudited = false;  ///< neither audited nor vouchered
  bool unvouchered = false;
  bool withoutAccount = false;  ///< names no control account; its voucher has one
  bool otherAccount = false;    ///< names another control account than its voucher
  int contactPeriods = 0;       ///< periods by which the contact record lies later
  int financialPeriods = 0;     ///< periods by which the financial date lies later
  int voucherPeriods = 0;       ///< periods by which the voucher lies later
  bool unposted = false;        ///< its voucher is not posted
};

/// Ordinary document or one that departs from the rule; each writes the document, its
/// lines, its voucher, its contact record and their balances.
Document addInvoice(Books& books, const Occasion& occasion, const Departure& departure = {});
Document addOtherBill(Books& books, const Occasion& occasion, const Departure& departure = {});

/// An other receivable or payable that an expense invoice of a cash purchase gave rise
/// to. It has to be settled within its period.
Document addExpenseBill(Books& books, const Occasion& occasion, bool settled);

struct ReceiptForm {
  int pre = 0;            ///< 0 ordinary, 1 in advance, -1 refund
  bool twoLines = false;  ///< a second line on the account for advances
  int counterAccount = 1002;
  bool fromCashModule = false;  ///< sent by the cash module and confirmed
};

/// A receipt or payment of `amount`. With two lines a departure from the control
/// account concerns the second line.
Document addReceipt(Books& books, const Occasion& occasion, Amount amount,
                    const ReceiptForm& form = {}, const Departure& departure = {});

/// A receipt or payment sent by the cash module that nobody has confirmed: it is in
/// no ledger yet.
void addUnconfirmedReceipt(Books& books, const Occasion& occasion, Amount amount);

/// A document from before the first period: an invoice or an advance.
Document addInitialDocument(Books& books, const Partner& partner, Amount amount, bool advance);

/// An amount of ordinary size in the partner's currency.
Amount anyAmount(Books& books, const Partner& partner);

}  // namespace velmora::cli::demo
