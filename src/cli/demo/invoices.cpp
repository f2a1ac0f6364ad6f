#include "cli/demo/document_parts.h"

namespace velmora::cli::demo {

namespace {

struct InvoiceLine {
  int item = 0;
  int quantity = 0;
  Money price;
  Amount amount;
};

InvoiceLine anyInvoiceLine(Books& books, const Partner& partner) {
  const int quantity = books.random().between(1, 50);
  const Money price{books.random().between(1'000, 60'000)};
  return {.item = books.random().between(301, 303),
          .quantity = quantity,
          .price = price,
          .amount = partner.currency.amount({price.cents * quantity})};
}

Amount writeInvoiceLines(Books& books, const Partner& partner, int invoice) {
  Tables& tables = books.tables();
  TableWriter& table = books.side().receivables() ? tables.saleLines : tables.purchaseLines;
  Amount total;
  const int lines = books.random().between(1, 3);
  for (int entry = 1; entry <= lines; ++entry) {
    const InvoiceLine line = anyInvoiceLine(books, partner);
    table.row(invoice, entry, line.item, line.quantity, line.price, line.amount);
    total += line.amount;
  }
  return total;
}

int nextInvoiceKey(Books& books) {
  Tables& tables = books.tables();
  return (books.side().receivables() ? tables.saleKeys : tables.purchaseKeys).next();
}

}  // namespace

Document addInvoice(Books& books, const Occasion& occasion, const Departure& departure) {
  const SideTerms& side = books.side();
  const Partner& partner = occasion.partner;
  const int id = nextInvoiceKey(books);
  const std::string number = books.nextNumber(Series::kInvoice);
  const Amount amount = writeInvoiceLines(books, partner, id);
  const ControlLine line{side.trade, namedAccount(side, side.trade, departure), amount};
  const int voucher =
      addDocumentVoucher(books, occasion, {&line, 1},
                         {.counterAccount = side.invoiceCounter,
                          .explanation = side.receivables() ? "销售发票" : "采购发票"},
                         departure);
  Tables& tables = books.tables();
  (side.receivables() ? tables.sales : tables.purchases)
      .row(id, side.classTypes.invoice, number, occasion.date(), financialDate(occasion, departure),
           yearOf(occasion.period), monthOf(occasion.period), partner.id, partner.department,
           partner.employee, partner.currency.id, partner.currency, side.creditStyle, line.named,
           line.named, !departure.unaudited, voucher);
  Contact contact = contactOf(occasion, side.invoiceType, number, amount, departure);
  contact.invoice = id;
  contact.account = line.named;
  contact.voucher = voucher;
  postContactLines(books, occasion, {&line, 1}, true, departure);
  return documentOf(contact, books.addContact(contact), id);
}

}  // namespace velmora::cli::demo
