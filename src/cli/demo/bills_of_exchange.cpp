#include <algorithm>

#include "cli/demo/operations.h"

namespace velmora::cli::demo {

namespace {

constexpr int kBank = 1002;
constexpr int kMerchandise = 1405;

bool endorsement(BillUse use) {
  return use == BillUse::kEndorsed || use == BillUse::kEndorsementReturned;
}

/// The account that the bill's amount goes to, or comes back from.
int useAccount(BillUse use) {
  return endorsement(use) ? kMerchandise : kBank;
}

/// The bill leaves the books: bills receivable on the credit side, bills payable on
/// the debit side. A returned endorsement brings it back.
int addUseVoucher(Books& books, const Occasion& occasion, BillUse use, Amount amount) {
  const Currency currency = occasion.partner.currency;
  const bool billDebit = books.side().receivables() == (use == BillUse::kEndorsementReturned);
  const auto line = [&](int account, bool debit) {
    return Posting{.account = account, .currency = currency, .amount = amount, .debit = debit};
  };
  const std::array postings{line(books.side().bills, billDebit), line(useAccount(use), !billDebit)};
  return books.addVoucher({.period = occasion.period, .day = occasion.day, .explanation = "票据"},
                          postings);
}

void writeUse(Books& books, const Occasion& occasion, BillUse use, int bill, Amount amount,
              int voucher) {
  Tables& tables = books.tables();
  const int id = tables.billUseKeys.next();
  const int currency = occasion.partner.currency.id;
  const int account = useAccount(use);
  switch (use) {
    case BillUse::kEndorsed:
    case BillUse::kEndorsementReturned:
      tables.endorsements.row(id, bill, use == BillUse::kEndorsed ? 1 : 2, occasion.date(),
                              currency, amount.original, account, voucher);
      return;
    case BillUse::kDiscounted:
      tables.discounts.row(id, bill, occasion.date(), currency, amount.original, account, voucher);
      return;
    case BillUse::kTransferred:
      tables.billTransfers.row(id, bill, occasion.date(), currency, amount.original, voucher);
      return;
    case BillUse::kSettled:
      tables.billSettlements.row(id, bill, occasion.date(), currency, account, amount, voucher);
      return;
  }
}

int writeBill(Books& books, const Occasion& occasion, const Document& receipt) {
  const SideTerms& side = books.side();
  const int bill = books.tables().billKeys.next();
  const collections::Date due = dateIn(occasion.period + 3, std::min(occasion.day, 28));
  books.tables().bills.row(bill, books.nextNumber(Series::kBillOfExchange), side.frp,
                           occasion.date(), due, side.itemClass, occasion.partner.id,
                           occasion.partner.currency.id, receipt.amount, receipt.bill);
  return bill;
}

}  // namespace

void addBillOfExchange(Books& books, const Occasion& occasion, BillUse use, bool vouchered) {
  const Document receipt = addReceipt(books, occasion, anyAmount(books, occasion.partner),
                                      {.counterAccount = books.side().bills});
  const int bill = writeBill(books, occasion, receipt);
  const int voucher = vouchered ? addUseVoucher(books, occasion, use, receipt.amount) : 0;
  writeUse(books, occasion, use, bill, receipt.amount, voucher);
}

void addStrayVoucher(Books& books, const Occasion& occasion) {
  const SideTerms& side = books.side();
  const Currency currency = occasion.partner.currency;
  const Amount amount = anyAmount(books, occasion.partner);
  const std::array postings{
      Posting{.account = side.trade,
              .partner = &occasion.partner,
              .currency = currency,
              .amount = amount,
              .debit = side.receivables()},
      Posting{
          .account = kBank, .currency = currency, .amount = amount, .debit = !side.receivables()}};
  books.addVoucher({.period = occasion.period,
                    .day = occasion.day,
                    .explanation = "手工凭证",
                    .origin = VoucherOrigin::kByHand},
                   postings);
}

}  // namespace velmora::cli::demo
