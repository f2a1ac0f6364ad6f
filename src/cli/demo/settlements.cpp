#include "cli/demo/settlements.h"

#include "cli/demo/operations.h"

namespace velmora::cli::demo {

namespace {

/// Initial documents count as types of their own in settlements.
int settledType(const Document& document) {
  return document.type + (document.initial ? 10 : 0);
}

void addSettledEntry(Books& books, int settlement, const Document& document, Amount amount) {
  books.tables().settledEntries.row(settlement, document.contact, 1, document.bill,
                                    settledType(document), document.initial, amount);
}

int addOffsetVoucher(Books& books, const Occasion& occasion, Amount amount) {
  const SideTerms& side = books.side();
  const Currency currency = occasion.partner.currency;
  const auto line = [&](int account, bool debit) {
    return Posting{.account = account,
                   .partner = &occasion.partner,
                   .currency = currency,
                   .amount = amount,
                   .debit = debit};
  };
  const std::array postings{line(side.advance, side.receivables()),
                            line(side.trade, !side.receivables())};
  return books.addVoucher({.period = occasion.period,
                           .day = occasion.day,
                           .explanation = side.receivables() ? "预收冲应收" : "预付冲应付"},
                          postings);
}

}  // namespace

void addSettlementRow(Books& books, const Occasion& occasion, const Document& document,
                      const SettlementRow& row) {
  const SideTerms& side = books.side();
  const Partner& partner = *document.partner;
  books.tables().settlements.row(books.tables().settlementRowKeys.next(), row.settlement,
                                 document.contact, document.bill, settledType(document),
                                 document.initial, side.frp, row.movesAccounts, occasion.date(),
                                 side.itemClass, partner.id, partner.department, partner.employee,
                                 partner.currency.id, row.transfer, row.transferId, row.withinSide,
                                 row.writeOff, row.returned, row.voucher, row.explanation);
}

void settle(Books& books, const Occasion& occasion, const Document& receipt,
            const Document& invoice, Amount amount) {
  const int settlement = books.tables().settlementKeys.next();
  for (const Document* document : {&receipt, &invoice}) {
    addSettlementRow(books, occasion, *document,
                     {.settlement = settlement, .explanation = "到款结算"});
    addSettledEntry(books, settlement, *document, amount);
  }
}

void offsetAdvance(Books& books, const Occasion& occasion, const Document& advance,
                   const Document& invoice, Amount amount, bool vouchered) {
  const int settlement = books.tables().settlementKeys.next();
  const int voucher = vouchered ? addOffsetVoucher(books, occasion, amount) : 0;
  for (const Document* document : {&advance, &invoice}) {
    addSettlementRow(books, occasion, *document,
                     {.settlement = settlement,
                      .movesAccounts = true,
                      .transfer = true,
                      .voucher = voucher,
                      .explanation = books.side().receivables() ? "预收冲应收" : "预付冲应付"});
    addSettledEntry(books, settlement, *document, amount);
  }
  // In the contact balances it changes none of the accounts: the movement has none.
  for (const bool increase : {true, false})
    books.postContact(occasion.partner, 0, occasion.period, amount, increase);
}

}  // namespace velmora::cli::demo
