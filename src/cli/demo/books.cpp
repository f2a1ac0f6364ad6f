#include "cli/demo/books.h"

#include "cli/demo/numbering.h"

namespace velmora::cli::demo {

namespace {

// Retained earnings take the other side of opening balances.
constexpr int kRetainedEarnings = 4104;

Amount debitTotal(std::span<const Posting> postings) {
  Amount total;
  for (const Posting& posting : postings)
    if (posting.debit) total += posting.amount;
  return total;
}

void writeBalanceRow(TableWriter& table, int period, int account, int detail, int currency,
                     Amount begin, const Movement& movement, Amount end) {
  table.row(yearOf(period), monthOf(period), account, detail, currency, begin, movement.debit,
            movement.credit, end);
}

}  // namespace

Books::Books(const SideTerms& side, Tables& tables, AccountBalances& ledger,
             std::vector<Partner> partners, std::uint64_t seed)
    : side_(side),
      tables_(tables),
      ledger_(ledger),
      partners_(std::move(partners)),
      random_(seed),
      contacts_(side, partners_.size()),
      details_(side, partners_.size()) {}

const Partner& Books::anyPartner() {
  return partners_[static_cast<std::size_t>(random_.below(static_cast<int>(partners_.size())))];
}

const Partner& Books::anyLocalPartner() {
  const Partner* partner = &anyPartner();
  while (partner->currency.id != kRenminbi.id) partner = &anyPartner();
  return *partner;
}

const Partner& Books::counterpartOf(const Partner& partner) const {
  const auto position = static_cast<std::size_t>(partner.index) + kCurrencyCycle;
  return partners_[position % partners_.size()];
}

std::string Books::nextNumber(Series series) {
  const auto position = static_cast<std::size_t>(series);
  return numbered(side_.prefixes[position], ++numbers_[position]);
}

int Books::documents() const {
  int count = 0;
  for (const Series series : {Series::kInvoice, Series::kOtherBill, Series::kExpense,
                              Series::kReceipt, Series::kAdvance, Series::kRefund})
    count += numbers_[static_cast<std::size_t>(series)];
  return count;
}

int Books::addVoucher(const VoucherHead& head, std::span<const Posting> postings) {
  const int id = tables_.voucherKeys.next();
  const int group = static_cast<int>(head.group);
  const bool posted = head.period <= kCurrentPeriod && !head.unposted;
  const Money total = debitTotal(postings).local;
  const collections::Date date = dateIn(head.period, head.day);
  const int number = tables_.voucherNumbers[{head.period, group}].next();
  const auto write = [&](const auto& indicator) {
    tables_.vouchers.row(id, date, yearOf(head.period), monthOf(head.period), group, number,
                         head.explanation, static_cast<int>(postings.size()), total, total,
                         indicator, posted, posted);
  };
  switch (head.origin) {
    case VoucherOrigin::kModule:
      write(side_.internalIndicator);
      break;
    case VoucherOrigin::kInventory:
      write("Industry");
      break;
    case VoucherOrigin::kByHand:
      write(nullptr);
      break;
  }
  int line = 0;
  for (const Posting& posting : postings) {
    const int detail = posting.partner != nullptr ? posting.partner->id : 0;
    tables_.voucherLines.row(id, ++line, head.explanation, posting.account, detail,
                             posting.currency.id, posting.currency, posting.debit, posting.amount);
    if (!posted) continue;
    ledger_.add(posting.account, posting.currency.id, head.period, posting.amount, posting.debit);
    if (posting.partner != nullptr)
      details_.add(*posting.partner, posting.account, head.period, posting.amount, posting.debit);
  }
  return id;
}

int Books::addContact(const Contact& contact) {
  const int id = tables_.contactKeys.next();
  const Partner& partner = *contact.partner;
  tables_.contacts.row(
      id, contact.type, side_.frp, contact.pre, contact.initial, yearOf(contact.period),
      monthOf(contact.period), contact.date, contact.financialDate, contact.number, contact.ownBill,
      contact.invoice, contact.invoice != 0 ? side_.invoiceType : 0, contact.invoice != 0,
      side_.itemClass, partner.id, partner.department, partner.employee, partner.currency.id,
      partner.currency, contact.amount, contact.account, contact.audited, contact.voucher);
  return id;
}

void Books::postOpening(const Partner& partner, int account, Amount amount, bool increase) {
  contacts_.add(partner, account, kBeforeFirstPeriod, amount, increase);
  postLedgerOpening(partner, account, amount, increase);
}

void Books::postLedgerOpening(const Partner& partner, int account, Amount amount, bool increase) {
  const bool debit = side_.receivables() == increase;
  details_.add(partner, account, kBeforeFirstPeriod, amount, debit);
  ledger_.add(account, partner.currency.id, kBeforeFirstPeriod, amount, debit);
  ledger_.add(kRetainedEarnings, kRenminbi.id, kBeforeFirstPeriod, {amount.local, amount.local},
              !debit);
}

void Books::writeBalances() {
  writeContactBalances();
  writeLedgerDetail();
}

void Books::writeContactBalances() {
  contacts_.forEach([&](std::size_t position, int account, const History& history) {
    const Partner& partner = partners_[position];
    history.forEachPeriod([&](int period, Amount begin, const Movement& movement, Amount end) {
      tables_.contactBalances.row(yearOf(period), monthOf(period), side_.frp, side_.itemClass,
                                  partner.id, partner.department, partner.employee, account,
                                  partner.currency.id, begin, movement.debit, movement.credit, end);
    });
  });
}

void Books::writeLedgerDetail() {
  details_.forEach([&](std::size_t position, int account, const History& history) {
    const Partner& partner = partners_[position];
    history.forEachPeriod([&](int period, Amount begin, const Movement& movement, Amount end) {
      for (const int currency : {0, partner.currency.id})
        writeBalanceRow(tables_.balances, period, account, partner.id, currency, begin, movement,
                        end);
    });
  });
}

void writeAccountBalances(Tables& tables, const AccountBalances& ledger) {
  ledger.forEach([&](int account, int currency, const History& history) {
    history.forEachPeriod([&](int period, Amount begin, const Movement& movement, Amount end) {
      writeBalanceRow(tables.balances, period, account, 0, currency, begin, movement, end);
    });
  });
}

}  // namespace velmora::cli::demo
