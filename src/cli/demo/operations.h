#pragma once

#include "cli/demo/documents.h"

namespace velmora::cli::demo {

/// Settles `amount` of a receipt or payment against an invoice of the same partner. No
/// account changes, so no voucher is due.
void settle(Books& books, const Occasion& occasion, const Document& receipt,
            const Document& invoice, Amount amount);

/// Offsets an advance against an invoice: moves the amount between control accounts.
void offsetAdvance(Books& books, const Occasion& occasion, const Document& advance,
                   const Document& invoice, Amount amount, bool vouchered = true);

/// What becomes of a bill of exchange. Issued bills can only be settled.
enum class BillUse { kEndorsed, kEndorsementReturned, kDiscounted, kTransferred, kSettled };

/// A receipt or payment by bill of exchange, and what became of the bill.
void addBillOfExchange(Books& books, const Occasion& occasion, BillUse use, bool vouchered = true);

/// Moves an amount from the occasion's partner to another one: as a transfer, or as a
/// write-off against the other's document.
void addTransfer(Books& books, const Occasion& occasion, const Departure& departure = {});
void addWriteOff(Books& books, const Occasion& occasion, const Departure& departure = {});

/// A bill of exchange returned unpaid: the amount is owed again.
void addReturnedBill(Books& books, const Occasion& occasion, const Departure& departure = {});

/// A receivable given up as a loss; receivables only.
void addBadDebt(Books& books, const Occasion& occasion, const Departure& departure = {});

/// A voucher keyed into the ledger by hand that posts to a control account.
void addStrayVoucher(Books& books, const Occasion& occasion);

}  // namespace velmora::cli::demo
