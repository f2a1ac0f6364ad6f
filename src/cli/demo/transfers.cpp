#include "cli/demo/document_parts.h"
#include "cli/demo/operations.h"
#include "cli/demo/settlements.h"

namespace velmora::cli::demo {

namespace {

// Types of contact records that no document stands behind.
constexpr int kBadDebtType = 8;
constexpr int kTransferType = 9;
constexpr int kReturnedBillType = 10;

int addTransferVoucher(Books& books, const Occasion& occasion, const Partner& to, Amount amount,
                       const Departure& departure) {
  if (departure.unvouchered) return 0;
  const SideTerms& side = books.side();
  const auto line = [&](const Partner& partner, bool debit) {
    return Posting{.account = side.trade,
                   .partner = &partner,
                   .currency = partner.currency,
                   .amount = amount,
                   .debit = debit};
  };
  const std::array postings{line(to, side.receivables()),
                            line(occasion.partner, !side.receivables())};
  return books.addVoucher({.period = occasion.period + departure.voucherPeriods,
                           .day = occasion.day,
                           .explanation = "往来转账"},
                          postings);
}

/// One end of a transfer: `amount` is negative where it leaves.
Document addTransferContact(Books& books, const Occasion& occasion, std::string_view number,
                            Amount amount, int voucher, const Departure& departure) {
  const SideTerms& side = books.side();
  Contact contact = contactOf(occasion, kTransferType, number, amount, departure);
  contact.account = side.trade;
  contact.voucher = voucher;
  const bool increase = amount.original.cents > 0;
  const ControlLine line{side.trade, side.trade, increase ? amount : -amount};
  postContactLines(books, occasion, {&line, 1}, increase, departure);
  return documentOf(contact, books.addContact(contact), 0);
}

/// Moves an amount; `row` says as what, and is completed here.
void addMove(Books& books, const Occasion& occasion, Series series, SettlementRow row,
             const Departure& departure) {
  const Partner& partner = books.counterpartOf(occasion.partner);
  const Occasion arrival{partner, occasion.period, occasion.day};
  const Amount amount = anyAmount(books, occasion.partner);
  const std::string number = books.nextNumber(series);
  row.voucher = addTransferVoucher(books, occasion, partner, amount, departure);
  row.explanation = "往来转账";
  const Document from =
      addTransferContact(books, occasion, number, -amount, row.voucher, departure);
  const Document to = addTransferContact(books, arrival, number, amount, row.voucher, departure);
  addSettlementRow(books, occasion, from, row);
  addSettlementRow(books, occasion, to, row);
}

struct ChangeForm {
  int type = 0;
  Series series = Series::kTransfer;
  VoucherForm voucher;
};

/// A change of what is owed that no document stands behind.
Document addChange(Books& books, const Occasion& occasion, const ChangeForm& form,
                   const Departure& departure) {
  const SideTerms& side = books.side();
  const ControlLine line{side.trade, side.trade, anyAmount(books, occasion.partner)};
  const std::string number = books.nextNumber(form.series);
  Contact contact = contactOf(occasion, form.type, number, line.amount, departure);
  contact.account = side.trade;
  contact.voucher = addDocumentVoucher(books, occasion, {&line, 1}, form.voucher, departure);
  postContactLines(books, occasion, {&line, 1}, form.voucher.increase, departure);
  return documentOf(contact, books.addContact(contact), 0);
}

}  // namespace

void addTransfer(Books& books, const Occasion& occasion, const Departure& departure) {
  const int settlement = books.tables().settlementKeys.next();
  addMove(books, occasion, Series::kTransfer,
          {.settlement = settlement, .transfer = true, .transferId = settlement}, departure);
}

void addWriteOff(Books& books, const Occasion& occasion, const Departure& departure) {
  const int settlement = books.tables().settlementKeys.next();
  addMove(books, occasion, Series::kWriteOff,
          {.settlement = settlement, .withinSide = 1, .writeOff = settlement}, departure);
}

void addReturnedBill(Books& books, const Occasion& occasion, const Departure& departure) {
  const Document change =
      addChange(books, occasion,
                {.type = kReturnedBillType,
                 .series = Series::kReturnedBill,
                 .voucher = {.counterAccount = books.side().bills, .explanation = "退票"}},
                departure);
  addSettlementRow(books, occasion, change,
                   {.settlement = books.tables().settlementKeys.next(),
                    .returned = true,
                    .voucher = change.voucher,
                    .explanation = "退票"});
}

void addBadDebt(Books& books, const Occasion& occasion, const Departure& departure) {
  constexpr int kBadDebtAllowance = 1231;
  addChange(books, occasion,
            {.type = kBadDebtType,
             .series = Series::kBadDebt,
             .voucher = {.counterAccount = kBadDebtAllowance,
                         .increase = false,
                         .explanation = "坏账损失"}},
            departure);
}

}  // namespace velmora::cli::demo
