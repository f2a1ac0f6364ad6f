#include "cli/demo/document_parts.h"

namespace velmora::cli::demo {

namespace {

Amount totalOf(std::span<const ControlLine> lines) {
  Amount total;
  for (const ControlLine& line : lines) total += line.amount;
  return total;
}

}  // namespace

int namedAccount(const SideTerms& side, int account, const Departure& departure) {
  if (departure.withoutAccount) return 0;
  if (departure.otherAccount) return account == side.other ? side.trade : side.other;
  return account;
}

int addDocumentVoucher(Books& books, const Occasion& occasion, std::span<const ControlLine> lines,
                       const VoucherForm& form, const Departure& departure) {
  if (departure.unaudited || departure.unvouchered) return 0;
  const Currency currency = occasion.partner.currency;
  const bool controlDebit = books.side().receivables() == form.increase;
  std::array<Posting, 3> postings;
  std::size_t count = 0;
  for (const ControlLine& line : lines)
    postings.at(count++) = {.account = line.account,
                            .partner = &occasion.partner,
                            .currency = currency,
                            .amount = line.amount,
                            .debit = controlDebit};
  postings.at(count++) = {.account = form.counterAccount,
                          .currency = currency,
                          .amount = totalOf(lines),
                          .debit = !controlDebit};
  return books.addVoucher({.period = occasion.period + departure.voucherPeriods,
                           .day = occasion.day,
                           .group = form.group,
                           .explanation = form.explanation,
                           .unposted = departure.unposted},
                          std::span(postings).first(count));
}

void postContactLines(Books& books, const Occasion& occasion, std::span<const ControlLine> lines,
                      bool increase, const Departure& departure) {
  if (departure.unaudited) return;
  const int period = occasion.period + departure.contactPeriods;
  for (const ControlLine& line : lines)
    books.postContact(occasion.partner, line.named, period, line.amount, increase);
}

collections::Date financialDate(const Occasion& occasion, const Departure& departure) {
  return departure.financialPeriods == 0 ? occasion.date()
                                         : dateIn(occasion.period + departure.financialPeriods, 1);
}

Contact contactOf(const Occasion& occasion, int type, std::string_view number, Amount amount,
                  const Departure& departure) {
  return {.type = type,
          .period = occasion.period + departure.contactPeriods,
          .date = occasion.date(),
          .financialDate = financialDate(occasion, departure),
          .number = number,
          .partner = &occasion.partner,
          .amount = amount,
          .audited = !departure.unaudited};
}

Document documentOf(const Contact& contact, int id, int bill) {
  return {.partner = contact.partner,
          .contact = id,
          .bill = bill,
          .type = contact.type,
          .voucher = contact.voucher,
          .initial = contact.initial,
          .amount = contact.amount};
}

}  // namespace velmora::cli::demo
