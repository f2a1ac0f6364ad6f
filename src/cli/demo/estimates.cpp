#include "cli/demo/estimates.h"

#include <algorithm>

#include "cli/demo/stock_receipt.h"

namespace velmora::cli::demo {

namespace {

// --- Purchase receipts: the records decide -------------------------------------------------

void addWaiting(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
}

/// Reversed when the next month opens, the invoice coming then.
void addReversed(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.estimate(receipt.period());
  receipt.write(std::nullopt);
  receipt.reverse(receipt.period() + 1);
  receipt.invoice(receipt.period() + 1);
}

/// The estimate stands until the invoice comes, that month or later.
void addCleared(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.invoiceAndClear(receipt.period() + books.random().below(3));
}

/// Reversed and estimated anew, then cleared.
void addRenewed(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.reverse(receipt.period() + 1);
  receipt.estimate(receipt.period() + 1);
  receipt.invoiceAndClear(receipt.period() + 2);
}

/// An invoice for a part leaves the estimate as it is.
void addInvoicedInPart(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.invoiceInPart(receipt.period() + 1);
}

void addInvoicedAtOnce(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.write(0);
  receipt.invoice(receipt.period());
}

void addCancelled(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.recordOnly();
  receipt.write(std::nullopt, true);
}

void addLeftOut(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kPurchase);
  receipt.recordOnly();
  receipt.write(std::nullopt);
  receipt.leaveOutOfEstimates();
}

// --- Outsourced processing: what becomes of a receipt is known within its month -----------

void addProcessing(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kProcessing);
  receipt.estimate(receipt.period());
  receipt.write(std::nullopt);
}

void addReversedProcessing(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kProcessing);
  receipt.estimate(receipt.period());
  receipt.reverse(receipt.period());
  receipt.write(std::nullopt);
  receipt.invoice(receipt.period() + 1);
}

void addSubcontract(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kSubcontract);
  receipt.write(receipt.estimate(receipt.period()));
}

void addSubcontractInvoicedInPart(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kSubcontract);
  receipt.write(receipt.estimate(receipt.period()));
  receipt.takeBack(receipt.invoiceInPart(receipt.period()));
}

void addSubcontractInvoiced(Books& books, const Occasion& occasion) {
  StockReceipt receipt(books, occasion, kSubcontract);
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
    StockReceipt made(books, {books.anyLocalPartner(), kBeforeFirstPeriod, 28}, kPurchase);
    made.estimateBeforeFirstPeriod();
    return made;
  };
  StockReceipt reversed = receipt();
  reversed.write(std::nullopt);
  reversed.reverse(1);
  reversed.invoice(1);
  StockReceipt cleared = receipt();
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
