#include "cli/demo/estimates.h"

#include <algorithm>
#include <optional>

#include "cli/demo/documents.h"
#include "cli/demo/numbering.h"

namespace velmora::cli::demo {

namespace {

constexpr int kMerchandise = 1405;
constexpr int kMonthEnd = 28;  // when inventory makes its vouchers

/// A kind of receipt: its transaction type and the records that tell when it was
/// estimated and when that was reversed (0: it keeps none).
struct ReceiptKind {
  int tranType = 0;
  int SideTerms::*account = nullptr;
  int estimateRecord = 0, reversalRecord = 0;
  std::string_view prefix;
};

constexpr ReceiptKind kPurchase{1, &SideTerms::goodsEstimate, 4000, -4000, "WGRK"};
constexpr ReceiptKind kProcessing{5, &SideTerms::processingEstimate, 5, 301, "WWRK"};
constexpr ReceiptKind kSubcontract{1'002'523, &SideTerms::processingEstimate, 0, 0, "WWGX"};

struct ReceiptLine {
  int item = 0;
  int quantity = 0;
  Money price;

  Amount costOf(int part) const { return kRenminbi.amount({price.cents * part}); }
  Amount cost() const { return costOf(quantity); }
};

/// A receipt and what the ledger and the records of inventory say about it.
class Receipt {
 public:
  Receipt(Books& books, const Occasion& occasion, const ReceiptKind& kind)
      : books_(books), kind_(kind), on_(occasion), id_(books.tables().stockKeys.next()) {
    Random& random = books.random();
    for (int lines = random.between(1, 2); lines > 0; --lines)
      lines_.push_back({.item = random.between(301, 303),
                        .quantity = random.between(2, 50),
                        .price = {random.between(1'000, 20'000)}});
  }

  int period() const { return on_.period; }

  /// Posts the estimated liability of the month, with its record. Returns the voucher.
  int estimate(int period) {
    if (period > kCurrentPeriod) return 0;
    return recorded(kind_.estimateRecord, period, post(period, cost(), "暂估入库"));
  }
  void reverse(int period) {
    if (period > kCurrentPeriod) return;
    recorded(kind_.reversalRecord, period, post(period, -cost(), "冲回暂估"));
  }
  /// A record that no voucher stands behind.
  void recordOnly() { recorded(kind_.estimateRecord, period(), 0); }
  /// Entered with the opening balances: recorded in the first period.
  void estimateBeforeFirstPeriod() {
    books_.postLedgerOpening(on_.partner, account(), cost(), true);
    recorded(kind_.estimateRecord, 0, 0);
  }

  /// The invoice has come for everything; whether its period has begun.
  bool invoice(int period) {
    if (period > kCurrentPeriod) return false;
    for (std::size_t i = 0; i < lines_.size(); ++i) match(1, i, lines_[i].quantity, true, period);
    return true;
  }
  /// The same; its voucher takes back the estimate, too.
  void invoiceAndClear(int period) {
    if (invoice(period)) post(period, -cost(), "冲回暂估");
  }
  /// The invoice has come for half of the first line. Returns what that cost.
  Amount invoiceInPart(int period) {
    if (period > kCurrentPeriod) return {};
    const int half = lines_.front().quantity / 2;
    match(1, 0, half, false, period);
    return lines_.front().costOf(half);
  }
  void takeBack(Amount amount) { post(period(), -amount, "冲回暂估"); }
  void leaveOutOfEstimates() { match(4, 0, lines_.front().quantity, false, period()); }

  /// `voucher`: 0 or none without one, -1 when none is to be made.
  void write(std::optional<int> voucher, bool cancelled = false) {
    Tables& tables = books_.tables();
    const Partner& partner = on_.partner;
    const std::string number = numbered(kind_.prefix, id_);
    const bool subcontract = kind_.tranType == kSubcontract.tranType;
    if (subcontract)
      tables.subcontractBills.row(id_, number, on_.date(), partner.id, partner.department,
                                  partner.employee, account(), voucher);
    else
      tables.stockBills.row(id_, kind_.tranType, number, on_.date(), partner.id, partner.department,
                            partner.employee, account(), voucher, cancelled);
    int entry = 0;
    for (const ReceiptLine& line : lines_)
      if (subcontract)
        tables.subcontractLines.row(id_, ++entry, line.item, line.quantity, line.cost().local);
      else
        writeStockLine(++entry, line);
  }

 private:
  /// Processed goods are worth their material, too.
  void writeStockLine(int entry, const ReceiptLine& line) {
    const Money cost = line.cost().local;
    const bool processed = kind_.tranType == kProcessing.tranType;
    books_.tables().stockLines.row(id_, entry, line.item, line.quantity,
                                   processed ? cost + cost : cost, processed ? cost : Money{});
  }

  int account() const { return books_.side().*kind_.account; }

  Amount cost() const {
    Amount total;
    for (const ReceiptLine& line : lines_) total += line.cost();
    return total;
  }

  /// What is taken back is posted in red, on the side of the estimate.
  int post(int period, Amount amount, std::string_view explanation) {
    const std::array postings{
        Posting{.account = kMerchandise, .currency = kRenminbi, .amount = amount, .debit = true},
        Posting{.account = account(),
                .partner = &on_.partner,
                .currency = kRenminbi,
                .amount = amount,
                .debit = false}};
    return books_.addVoucher({.period = period,
                              .day = kMonthEnd,
                              .explanation = explanation,
                              .origin = VoucherOrigin::kInventory},
                             postings);
  }

  int recorded(int type, int period, int voucher) {
    Tables& tables = books_.tables();
    if (type != 0)
      tables.estimateRecords.row(tables.estimateRecordKeys.next(), id_, type, yearOf(period),
                                 monthOf(period), voucher);
    return voucher;
  }

  void match(int tag, std::size_t line, int quantity, bool inFull, int period) {
    Tables& tables = books_.tables();
    tables.matches.row(tables.matchKeys.next(), tag, kind_.tranType, id_,
                       static_cast<int>(line) + 1, quantity, lines_[line].costOf(quantity).local,
                       inFull, yearOf(period), monthOf(period));
  }

  Books& books_;
  const ReceiptKind& kind_;
  Occasion on_;
  int id_;
  std::vector<ReceiptLine> lines_;
};

// --- Purchase receipts: the records decide -------------------------------------------------

void addWaiting(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
}

/// Reversed when the next month opens, the invoice coming then.
void addReversed(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.estimate(receipt.period());
  receipt.write(std::nullopt);
  receipt.reverse(receipt.period() + 1);
  receipt.invoice(receipt.period() + 1);
}

/// The estimate stands until the invoice comes, that month or later.
void addCleared(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.invoiceAndClear(receipt.period() + books.random().below(3));
}

/// Reversed and estimated anew, then cleared.
void addRenewed(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.reverse(receipt.period() + 1);
  receipt.estimate(receipt.period() + 1);
  receipt.invoiceAndClear(receipt.period() + 2);
}

/// An invoice for a part leaves the estimate as it is.
void addInvoicedInPart(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.invoiceInPart(receipt.period() + 1);
}

void addInvoicedAtOnce(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.write(0);
  receipt.invoice(receipt.period());
}

void addCancelled(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.recordOnly();
  receipt.write(std::nullopt, true);
}

void addLeftOut(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kPurchase);
  receipt.recordOnly();
  receipt.write(std::nullopt);
  receipt.leaveOutOfEstimates();
}

// --- Outsourced processing: what becomes of a receipt is known within its month -----------

void addProcessing(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kProcessing);
  receipt.estimate(receipt.period());
  receipt.write(std::nullopt);
}

void addReversedProcessing(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kProcessing);
  receipt.estimate(receipt.period());
  receipt.reverse(receipt.period());
  receipt.write(std::nullopt);
  receipt.invoice(receipt.period() + 1);
}

void addSubcontract(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kSubcontract);
  receipt.write(receipt.estimate(receipt.period()));
}

void addSubcontractInvoicedInPart(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kSubcontract);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.takeBack(receipt.invoiceInPart(receipt.period()));
}

void addSubcontractInvoiced(Books& books, const Occasion& occasion) {
  Receipt receipt(books, occasion, kSubcontract);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.invoiceAndClear(receipt.period());
}

constexpr std::array kEstimates{addWaiting,
                                addReversed,
                                addCleared,
                                addRenewed,
                                addInvoicedInPart,
                                addInvoicedAtOnce,
                                addCancelled,
                                addLeftOut,
                                addProcessing,
                                addReversedProcessing,
                                addSubcontract,
                                addSubcontractInvoicedInPart,
                                addSubcontractInvoiced};

/// Goods from before the first period: reversed, cleared by their invoice, or waiting
/// to this day.
void addInitialEstimates(Books& books) {
  const auto receipt = [&] {
    Receipt made(books, {books.anyLocalPartner(), kBeforeFirstPeriod, 28}, kPurchase);
    made.estimateBeforeFirstPeriod();
    return made;
  };
  Receipt reversed = receipt();
  reversed.write(std::nullopt);
  reversed.reverse(1);
  reversed.invoice(1);
  Receipt cleared = receipt();
  cleared.write(-1);
  cleared.invoiceAndClear(2);
  receipt().write(-1);
}

}  // namespace

void addEstimates(Books& books, int documents) {
  constexpr int kDocumentsPerEstimate = 20;
  constexpr int kRounds = 5;
  const int rounds =
      std::max(kRounds, documents / kDocumentsPerEstimate / static_cast<int>(kEstimates.size()));
  addInitialEstimates(books);
  // None in the first period: initial balances are compared with it as a whole.
  for (int round = 0; round < rounds; ++round)
    for (const auto add : kEstimates)
      add(books, {books.anyLocalPartner(), kCurrentPeriod - round % kCurrentPeriod,
                  books.random().between(1, 28)});
}

}  // namespace velmora::cli::demo
