#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "cli/demo/documents.h"

namespace velmora::cli::demo {

/// A kind of inventory receipt: its transaction type and the records that tell when it
/// was estimated and when that was reversed (0: it keeps none).
struct ReceiptKind {
  int tranType = 0;
  int SideTerms::*account = nullptr;
  int estimateRecord = 0, reversalRecord = 0;
  std::string_view prefix;
};

inline constexpr ReceiptKind kPurchase{1, &SideTerms::goodsEstimate, 4000, -4000, "WGRK"};
inline constexpr ReceiptKind kProcessing{5, &SideTerms::processingEstimate, 5, 301, "WWRK"};
inline constexpr ReceiptKind kSubcontract{1'002'523, &SideTerms::processingEstimate, 0, 0, "WWGX"};

/// An inventory receipt whose invoice has not come, and what the ledger and inventory's
/// records say about it. What would happen after the current period does not.
class StockReceipt {
 public:
  /// Payables only; `kind` outlives the receipt.
  StockReceipt(Books& books, const Occasion& occasion, const ReceiptKind& kind);

  int period() const { return on_.period; }

  /// Writes the document. `voucher`: 0 or none without one, -1 when none is to be made.
  void write(std::optional<int> voucher, bool cancelled = false);

  /// Posts the estimated liability of the month, with its record. Returns the voucher.
  int estimate(int period);
  /// Takes the estimate back, with its record.
  void reverse(int period);
  /// A record of an estimate that no voucher stands behind.
  void recordOnly();
  /// An estimate among the opening balances, recorded in the first period.
  void estimateBeforeFirstPeriod();

  /// The invoice comes for everything.
  void invoice(int period);
  /// The same; its voucher takes back the estimate, too.
  void invoiceAndClear(int period);
  /// The invoice comes for half of the first line. Returns what that cost.
  Amount invoiceInPart(int period);
  /// Posts that a part of the estimate is taken back in the receipt's own month.
  void takeBack(Amount amount);
  void leaveOutOfEstimates();

 private:
  struct Line {
    int item = 0;
    int quantity = 0;
    Money price;

    Amount costOf(int part) const { return kRenminbi.amount({price.cents * part}); }
    Amount cost() const { return costOf(quantity); }
  };

  int account() const { return books_.side().*kind_.account; }
  Amount cost() const;
  void writeStockBill(std::string_view number, std::optional<int> voucher, bool cancelled);
  void writeSubcontractBill(std::string_view number, std::optional<int> voucher);
  int post(int period, Amount amount, std::string_view explanation);
  void record(int type, int period, int voucher);
  void match(int tag, int entry, int quantity, bool inFull, int period);

  Books& books_;
  const ReceiptKind& kind_;
  Occasion on_;
  int id_;
  std::vector<Line> lines_;
};

}  // namespace velmora::cli::demo
