#include "cli/demo/ordinary.h"

namespace velmora::cli::demo {

namespace {

void addOpenInvoice(Books& books, const Occasion& occasion) {
  books.openInvoices().push_back(addInvoice(books, occasion));
}

void addAdvance(Books& books, const Occasion& occasion) {
  addReceipt(books, occasion, anyAmount(books, occasion.partner), {.pre = 1});
}

/// Pays the oldest open invoice in full.
void payInvoice(Books& books, const Occasion& occasion) {
  if (books.openInvoices().empty()) return addAdvance(books, occasion);
  const Document invoice = books.openInvoices().front();
  books.openInvoices().pop_front();
  const Occasion payment{*invoice.partner, occasion.period, occasion.day};
  const Document receipt =
      addReceipt(books, payment, invoice.amount, {.fromCashModule = books.random().below(10) == 0});
  settle(books, payment, receipt, invoice, invoice.amount);
}

void addOffset(Books& books, const Occasion& occasion) {
  const Document invoice = addInvoice(books, occasion);
  const Document advance = addReceipt(books, occasion, invoice.amount, {.pre = 1});
  offsetAdvance(books, occasion, advance, invoice, invoice.amount);
}

Amount smallerOf(Amount a, Amount b) {
  return a.original.cents < b.original.cents ? a : b;
}

/// Offsets an advance from before the first period as far as an invoice takes it.
void addInitialOffset(Books& books, const Occasion& occasion) {
  if (books.initialAdvances().empty()) return addOpenInvoice(books, occasion);
  const Document advance = books.initialAdvances().front();
  books.initialAdvances().pop_front();
  const Occasion offset{*advance.partner, occasion.period, occasion.day};
  const Document invoice = addInvoice(books, offset);
  offsetAdvance(books, offset, advance, invoice, smallerOf(advance.amount, invoice.amount));
}

void addUsedBill(Books& books, const Occasion& occasion) {
  const int uses = books.side().receivables() ? 5 : 1;
  const auto last = static_cast<int>(BillUse::kSettled);
  addBillOfExchange(books, occasion, static_cast<BillUse>(last - books.random().below(uses)));
}

void addRefund(Books& books, const Occasion& occasion) {
  addReceipt(books, occasion, anyAmount(books, occasion.partner), {.pre = -1});
}

void addLoss(Books& books, const Occasion& occasion) {
  books.side().receivables() ? addBadDebt(books, occasion) : addTransfer(books, occasion);
}

/// Kinds of business and their weights, of a thousand.
struct Business {
  int weight = 0;
  int documents = 1;
  void (*add)(Books& books, const Occasion& occasion) = nullptr;
};

constexpr std::array kBusiness{
    Business{470, 1, addOpenInvoice},
    Business{120, 1, [](Books& books, const Occasion& on) { addOtherBill(books, on); }},
    Business{20, 1, [](Books& books, const Occasion& on) { addExpenseBill(books, on, true); }},
    Business{260, 1, payInvoice},
    Business{40, 1, addAdvance},
    Business{30, 2, addOffset},
    Business{10, 1, addInitialOffset},
    Business{10, 1, addRefund},
    Business{20, 1, addUsedBill},
    Business{8, 0, [](Books& books, const Occasion& on) { addTransfer(books, on); }},
    Business{4, 0, [](Books& books, const Occasion& on) { addWriteOff(books, on); }},
    Business{4, 0, [](Books& books, const Occasion& on) { addReturnedBill(books, on); }},
    Business{4, 0, addLoss},
};

const Business& anyBusiness(Random& random) {
  int point = random.below(1'000);
  for (const Business& business : kBusiness) {
    if (point < business.weight) return business;
    point -= business.weight;
  }
  return kBusiness.front();
}

}  // namespace

void addOrdinaryBusiness(Books& books, int period, int day, int documentsLeft) {
  const Occasion occasion{books.anyPartner(), period, day};
  const Business& business = anyBusiness(books.random());
  const bool fits = business.documents <= documentsLeft;
  (fits ? business : kBusiness.front()).add(books, occasion);
}

void addInitialDocuments(Books& books) {
  for (const Partner& partner : books.partners()) {
    if (books.random().below(2) == 0)
      addInitialDocument(books, partner, anyAmount(books, partner), false);
    if (partner.index % 4 == 1)
      books.initialAdvances().push_back(
          addInitialDocument(books, partner, anyAmount(books, partner), true));
  }
}

void addOffsets(Books& books) {
  for (const int period : {kCurrentPeriod - 1, kCurrentPeriod}) {
    addOffset(books, {books.anyPartner(), period, 28});
    addInitialOffset(books, {books.anyPartner(), period, 28});
  }
}

}  // namespace velmora::cli::demo
