#include "cli/demo/document_parts.h"
#include "cli/demo/numbering.h"

namespace velmora::cli::demo {

namespace {

struct BillSource {
  int code = 0;
  int id = 0;
  int checkStatus = 0;
};

Document addBill(Books& books, const Occasion& occasion, Series series, Amount amount,
                 const BillSource& source, const Departure& departure) {
  const SideTerms& side = books.side();
  const Partner& partner = occasion.partner;
  const int id = books.tables().otherBillKeys.next();
  const std::string number = books.nextNumber(series);
  const ControlLine line{side.other, namedAccount(side, side.other, departure), amount};
  const int voucher =
      addDocumentVoucher(books, occasion, {&line, 1},
                         {.counterAccount = side.otherCounter,
                          .explanation = side.receivables() ? "其他应收单" : "其他应付单"},
                         departure);
  books.tables().otherBills.row(
      id, side.classTypes.otherBill, number, occasion.date(), occasion.date(),
      yearOf(occasion.period), monthOf(occasion.period), side.frp, side.itemClass, partner.id,
      partner.department, partner.employee, partner.currency.id, partner.currency, amount,
      line.named, !departure.unaudited, voucher, source.code, source.id, source.checkStatus);
  Contact contact = contactOf(occasion, side.otherBillType, number, amount, departure);
  contact.ownBill = id;
  contact.account = line.named;
  contact.voucher = voucher;
  postContactLines(books, occasion, {&line, 1}, true, departure);
  return documentOf(contact, books.addContact(contact), id);
}

}  // namespace

Document addOtherBill(Books& books, const Occasion& occasion, const Departure& departure) {
  return addBill(books, occasion, Series::kOtherBill, anyAmount(books, occasion.partner), {},
                 departure);
}

Document addExpenseBill(Books& books, const Occasion& occasion, bool settled) {
  // Entries of t_SubMessage: cash purchase, sale on credit, expense invoice payable.
  constexpr int kCashPurchase = 251;
  constexpr int kSaleOnCredit = 101;
  constexpr int kExpensePayable = 20301;
  const SideTerms& side = books.side();
  const int expense = books.tables().expenseKeys.next();
  const Document bill =
      addBill(books, occasion, Series::kExpense, anyAmount(books, occasion.partner),
              {.code = side.expenseSource, .id = expense, .checkStatus = settled}, {});
  books.tables().expenses.row(expense, numbered("FYFP", expense), occasion.date(),
                              side.expenseTransaction, kCashPurchase, kSaleOnCredit,
                              kExpensePayable, occasion.partner.id, occasion.partner.currency.id);
  return bill;
}

}  // namespace velmora::cli::demo
