#include "cli/demo/document_parts.h"

namespace velmora::cli::demo {

namespace {

constexpr int kBank = 1002;

int receiptClass(const SideTerms& side, int pre) {
  if (pre == 0) return side.classTypes.receipt;
  return pre > 0 ? side.classTypes.advance : side.classTypes.refund;
}

Series receiptSeries(int pre) {
  if (pre == 0) return Series::kReceipt;
  return pre > 0 ? Series::kAdvance : Series::kRefund;
}

std::string_view receiptText(const SideTerms& side, int pre) {
  if (pre == 0) return side.receivables() ? "收款单" : "付款单";
  if (pre > 0) return side.receivables() ? "预收单" : "预付单";
  return side.receivables() ? "应收退款单" : "应付退款单";
}

/// Half of the amount, rounded down to a hundredth in either currency.
Amount halfOf(Amount amount) {
  return {{amount.original.cents / 2}, {amount.local.cents / 2}};
}

struct ReceiptLines {
  std::array<ControlLine, 2> lines;
  std::size_t count = 1;

  std::span<const ControlLine> all() const { return std::span(lines).first(count); }
};

ReceiptLines receiptLines(const SideTerms& side, Amount amount, const ReceiptForm& form,
                          const Departure& departure) {
  const int account = form.pre > 0 ? side.advance : side.trade;
  if (!form.twoLines)
    return {.lines = {{{account, namedAccount(side, account, departure), amount}}}};
  const Amount half = halfOf(amount);
  return {.lines = {{{account, account, half},
                     {side.advance, namedAccount(side, side.advance, departure), amount - half}}},
          .count = 2};
}

struct CashModuleState {
  int classType = 0;
  bool confirmed = true;
};

void writeReceipt(Books& books, const Occasion& occasion, int id, std::string_view number,
                  Amount amount, int pre, bool audited, int voucher, const CashModuleState& cash) {
  const SideTerms& side = books.side();
  const Partner& partner = occasion.partner;
  const auto write = [&](const auto& sent) {
    books.tables().receipts.row(id, receiptClass(side, pre), number, occasion.date(),
                                occasion.date(), yearOf(occasion.period), monthOf(occasion.period),
                                side.frp, pre, side.itemClass, partner.id, partner.department,
                                partner.employee, partner.currency.id, partner.currency, amount,
                                audited, voucher, cash.classType, sent, cash.confirmed);
  };
  cash.classType != 0 ? write(occasion.date()) : write(nullptr);
}

void writeReceiptLines(Books& books, int id, std::span<const ControlLine> lines) {
  int index = 0;
  for (const ControlLine& line : lines)
    books.tables().receiptLines.row(id, ++index, line.named, line.amount);
}

}  // namespace

Document addReceipt(Books& books, const Occasion& occasion, Amount amount, const ReceiptForm& form,
                    const Departure& departure) {
  const SideTerms& side = books.side();
  const bool refund = form.pre < 0;
  const int id = books.tables().receiptKeys.next();
  const std::string number = books.nextNumber(receiptSeries(form.pre));
  const ReceiptLines lines = receiptLines(side, amount, form, departure);
  const bool paid = side.receivables() == refund;
  const int voucher =
      addDocumentVoucher(books, occasion, lines.all(),
                         {.counterAccount = form.counterAccount,
                          .increase = refund,
                          .group = form.counterAccount != kBank ? VoucherGroup::kJournal
                                   : paid                       ? VoucherGroup::kPayment
                                                                : VoucherGroup::kReceipt,
                          .explanation = receiptText(side, form.pre)},
                         departure);
  writeReceipt(books, occasion, id, number, amount, form.pre, !departure.unaudited, voucher,
               {.classType = form.fromCashModule ? side.cashModuleClass : 0});
  writeReceiptLines(books, id, lines.all());
  Contact contact = contactOf(occasion, side.receiptType, number, amount, departure);
  contact.pre = form.pre;
  contact.ownBill = id;
  contact.account = lines.lines[0].named;
  contact.voucher = voucher;
  postContactLines(books, occasion, lines.all(), refund, departure);
  return documentOf(contact, books.addContact(contact), id);
}

void addUnconfirmedReceipt(Books& books, const Occasion& occasion, Amount amount) {
  const int id = books.tables().receiptKeys.next();
  const ReceiptLines lines = receiptLines(books.side(), amount, {}, {});
  writeReceipt(books, occasion, id, books.nextNumber(Series::kReceipt), amount, 0, false, 0,
               {.classType = books.side().cashModuleClass, .confirmed = false});
  writeReceiptLines(books, id, lines.all());
}

}  // namespace velmora::cli::demo
