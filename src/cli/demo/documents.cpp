#include "cli/demo/documents.h"

#include "cli/demo/document_parts.h"

namespace velmora::cli::demo {

Amount anyAmount(Books& books, const Partner& partner) {
  return partner.currency.amount({books.random().between(50'000, 5'000'000)});
}

Document addInitialDocument(Books& books, const Partner& partner, Amount amount, bool advance) {
  const SideTerms& side = books.side();
  const Occasion occasion{partner, kBeforeFirstPeriod, 31};
  const int id = books.tables().initialKeys.next();
  const int account = advance ? side.advance : side.trade;
  const int type = advance ? side.receiptType : side.invoiceType;
  const std::string number = books.nextNumber(Series::kInitial);
  books.tables().initialDocuments.row(
      id, advance ? side.classTypes.initialAdvance : side.classTypes.initialInvoice,
      advance ? type + 10 : type, side.frp, number, occasion.date(), side.itemClass, partner.id,
      partner.department, partner.employee, partner.currency.id, partner.currency, account);
  books.tables().initialLines.row(id, 1, amount);
  Contact contact = contactOf(occasion, type, number, amount, {});
  contact.initial = true;
  contact.ownBill = id;
  contact.account = account;
  books.postOpening(partner, account, amount, !advance);
  return documentOf(contact, books.addContact(contact), id);
}

}  // namespace velmora::cli::demo
