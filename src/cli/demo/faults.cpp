#include "cli/demo/faults.h"

namespace velmora::cli::demo {

namespace {

constexpr Departure kUnaudited{.unaudited = true};
constexpr Departure kUnvouchered{.unvouchered = true};
constexpr Departure kVoucherLater{.voucherPeriods = 1};
constexpr Departure kWithoutAccount{.withoutAccount = true};
constexpr Departure kOtherAccount{.otherAccount = true};
constexpr Departure kUnposted{.unposted = true};

template <auto departure>
void plantInvoice(Books& books, const Occasion& occasion) {
  addInvoice(books, occasion, *departure);
}

template <auto departure>
void plantOtherBill(Books& books, const Occasion& occasion) {
  addOtherBill(books, occasion, *departure);
}

template <auto departure, int pre = 0, bool twoLines = false>
void plantReceipt(Books& books, const Occasion& occasion) {
  addReceipt(books, occasion, anyAmount(books, occasion.partner),
             {.pre = pre, .twoLines = twoLines}, *departure);
}

template <BillUse use>
void plantBillUse(Books& books, const Occasion& occasion) {
  addBillOfExchange(books, occasion, use, false);
}

void plantExpense(Books& books, const Occasion& occasion) {
  addExpenseBill(books, occasion, false);
}

void plantOffset(Books& books, const Occasion& occasion) {
  const Document invoice = addInvoice(books, occasion);
  const Document advance = addReceipt(books, occasion, invoice.amount, {.pre = 1});
  offsetAdvance(books, occasion, advance, invoice, invoice.amount, false);
}

void plantInitialOffset(Books& books, const Occasion& occasion) {
  const Document invoice = addInvoice(books, occasion);
  const Document advance = addInitialDocument(books, occasion.partner, invoice.amount, true);
  offsetAdvance(books, occasion, advance, invoice, invoice.amount, false);
}

void plantContactInNextPeriod(Books& books, const Occasion& occasion) {
  addInvoice(books, occasion, {.contactPeriods = 1});
}

void plantFinancialDateInNextPeriod(Books& books, const Occasion& occasion) {
  addInvoice(books, occasion, {.financialPeriods = 1});
}

void plantUnconfirmed(Books& books, const Occasion& occasion) {
  addUnconfirmedReceipt(books, occasion, anyAmount(books, occasion.partner));
}

const std::array kCommonFaults{
    FaultKind{1, 1, 1, false, plantOtherBill<&kUnaudited>},
    FaultKind{1, 1, 1, false, plantInvoice<&kUnaudited>},
    FaultKind{1, 1, 1, false, plantReceipt<&kUnaudited, 0>},
    FaultKind{1, 1, 1, false, plantReceipt<&kUnaudited, 1>},
    FaultKind{1, 1, 1, false, plantReceipt<&kUnaudited, -1>},
    FaultKind{2, 1, 1, true, plantExpense},
    FaultKind{3, 1, 1, false, plantInvoice<&kUnvouchered>},
    FaultKind{3, 1, 1, false, plantOtherBill<&kUnvouchered>},
    // One finding a line: they are on different accounts.
    FaultKind{3, 1, 2, false, plantReceipt<&kUnvouchered, 0, true>},
    FaultKind{4, 1, 1, false, plantBillUse<BillUse::kSettled>},
    FaultKind{
        5, 0, 1, false,
        [](Books& books, const Occasion& occasion) { addWriteOff(books, occasion, kUnvouchered); }},
    FaultKind{6, 0, 1, false,
              [](Books& books, const Occasion& occasion) {
                addReturnedBill(books, occasion, kUnvouchered);
              }},
    // Either end of a transfer is a finding.
    FaultKind{
        7, 0, 2, false,
        [](Books& books, const Occasion& occasion) { addTransfer(books, occasion, kUnvouchered); }},
    FaultKind{8, 2, 1, false, plantOffset},
    FaultKind{8, 1, 1, false, plantInitialOffset},
    FaultKind{9, 0, 1, false, addStrayVoucher},
    FaultKind{10, 1, 1, false, plantContactInNextPeriod},
    FaultKind{10, 1, 1, false, plantFinancialDateInNextPeriod},
    FaultKind{11, 1, 1, false, plantOtherBill<&kVoucherLater>},
    FaultKind{11, 1, 1, false, plantInvoice<&kVoucherLater>},
    FaultKind{11, 1, 1, false, plantReceipt<&kVoucherLater, 0>},
    FaultKind{11, 1, 1, false, plantReceipt<&kVoucherLater, 1>},
    FaultKind{11, 1, 1, false, plantReceipt<&kVoucherLater, -1>},
    FaultKind{11, 0, 2, false,
              [](Books& books, const Occasion& occasion) {
                addTransfer(books, occasion, kVoucherLater);
              }},
    FaultKind{11, 0, 1, false,
              [](Books& books, const Occasion& occasion) {
                addReturnedBill(books, occasion, kVoucherLater);
              }},
    FaultKind{12, 1, 1, false, plantInvoice<&kWithoutAccount>},
    FaultKind{12, 1, 1, false, plantInvoice<&kOtherAccount>},
    FaultKind{12, 1, 1, false, plantOtherBill<&kWithoutAccount>},
    FaultKind{12, 1, 1, false, plantOtherBill<&kOtherAccount>},
    FaultKind{12, 1, 1, false, plantReceipt<&kWithoutAccount, 0, true>},
    FaultKind{12, 1, 1, false, plantReceipt<&kOtherAccount, 0, true>},
    FaultKind{14, 1, 1, false, plantUnconfirmed},
    FaultKind{0, 1, 1, false, plantInvoice<&kUnposted>},
    FaultKind{0, 1, 1, false, plantReceipt<&kUnposted, 1>},
};

const std::array kReceivablesFaults{
    FaultKind{4, 1, 1, false, plantBillUse<BillUse::kEndorsed>},
    FaultKind{4, 1, 1, false, plantBillUse<BillUse::kEndorsementReturned>},
    FaultKind{4, 1, 1, false, plantBillUse<BillUse::kDiscounted>},
    FaultKind{4, 1, 1, false, plantBillUse<BillUse::kTransferred>},
    FaultKind{
        11, 0, 1, false,
        [](Books& books, const Occasion& occasion) { addBadDebt(books, occasion, kVoucherLater); }},
};

constexpr std::array<std::string_view, kCheckItems + 1> kCheckItemNames{
    "vouchers not posted",
    "unaudited documents",
    "unsettled expense invoices",
    "documents without voucher",
    "bills of exchange without voucher",
    "write-offs without voucher",
    "returned bills without voucher",
    "transfers without voucher",
    "advance offsets without voucher",
    "vouchers without document",
    "inventory documents in another period",
    "vouchers in another period",
    "control account not on voucher",
    "current periods of other modules",
    "unconfirmed cash documents"};

}  // namespace

std::vector<FaultKind> faultsOf(const SideTerms& side) {
  std::vector<FaultKind> kinds(kCommonFaults.begin(), kCommonFaults.end());
  if (side.receivables())
    kinds.insert(kinds.end(), kReceivablesFaults.begin(), kReceivablesFaults.end());
  return kinds;
}

std::string_view checkItemName(int checkItem) {
  return kCheckItemNames.at(static_cast<std::size_t>(checkItem));
}

}  // namespace velmora::cli::demo
