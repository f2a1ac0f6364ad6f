#include "cli/demo/stock_receipt.h"

#include "cli/demo/numbering.h"

namespace velmora::cli::demo {

namespace {

constexpr int kMerchandise = 1405;
constexpr int kMonthEnd = 28;  // when inventory makes its vouchers

// Tags of matches: the receipt's side of one, and what leaves it out of estimates.
constexpr int kReceiptSide = 1;
constexpr int kLeftOut = 4;

}  // namespace

StockReceipt::StockReceipt(Books& books, const Occasion& occasion, const ReceiptKind& kind)
    : books_(books), kind_(kind), on_(occasion), id_(books.tables().stockKeys.next()) {
  Random& random = books.random();
  for (int lines = random.between(1, 2); lines > 0; --lines)
    lines_.push_back({.item = random.between(301, 303),
                      .quantity = random.between(2, 50),
                      .price = {random.between(1'000, 20'000)}});
}

Amount StockReceipt::cost() const {
  Amount total;
  for (const Line& line : lines_) total += line.cost();
  return total;
}

void StockReceipt::write(std::optional<int> voucher, bool cancelled) {
  const std::string number = numbered(kind_.prefix, id_);
  if (kind_.tranType == kSubcontract.tranType)
    writeSubcontractBill(number, voucher);
  else
    writeStockBill(number, voucher, cancelled);
}

void StockReceipt::writeStockBill(std::string_view number, std::optional<int> voucher,
                                  bool cancelled) {
  const Partner& partner = on_.partner;
  books_.tables().stockBills.row(id_, kind_.tranType, number, on_.date(), partner.id,
                                 partner.department, partner.employee, account(), voucher,
                                 cancelled);
  const bool processed = kind_.tranType == kProcessing.tranType;
  int entry = 0;
  for (const Line& line : lines_) {
    const Money cost = line.cost().local;
    // Processed goods are worth their material, too.
    books_.tables().stockLines.row(id_, ++entry, line.item, line.quantity,
                                   processed ? cost + cost : cost, processed ? cost : Money{});
  }
}

void StockReceipt::writeSubcontractBill(std::string_view number, std::optional<int> voucher) {
  const Partner& partner = on_.partner;
  books_.tables().subcontractBills.row(id_, number, on_.date(), partner.id, partner.department,
                                       partner.employee, account(), voucher);
  int entry = 0;
  for (const Line& line : lines_)
    books_.tables().subcontractLines.row(id_, ++entry, line.item, line.quantity, line.cost().local);
}

int StockReceipt::estimate(int period) {
  if (period > kCurrentPeriod) return 0;
  const int voucher = post(period, cost(), "暂估入库");
  record(kind_.estimateRecord, period, voucher);
  return voucher;
}

void StockReceipt::reverse(int period) {
  if (period > kCurrentPeriod) return;
  record(kind_.reversalRecord, period, post(period, -cost(), "冲回暂估"));
}

void StockReceipt::recordOnly() {
  record(kind_.estimateRecord, period(), 0);
}

void StockReceipt::estimateBeforeFirstPeriod() {
  books_.postLedgerOpening(on_.partner, account(), cost(), true);
  record(kind_.estimateRecord, 0, 0);
}

void StockReceipt::invoice(int period) {
  if (period > kCurrentPeriod) return;
  int entry = 0;
  for (const Line& line : lines_) match(kReceiptSide, ++entry, line.quantity, true, period);
}

void StockReceipt::invoiceAndClear(int period) {
  if (period > kCurrentPeriod) return;
  invoice(period);
  post(period, -cost(), "冲回暂估");
}

Amount StockReceipt::invoiceInPart(int period) {
  if (period > kCurrentPeriod) return {};
  const int half = lines_.front().quantity / 2;
  match(kReceiptSide, 1, half, false, period);
  return lines_.front().costOf(half);
}

void StockReceipt::takeBack(Amount amount) {
  post(period(), -amount, "冲回暂估");
}

void StockReceipt::leaveOutOfEstimates() {
  match(kLeftOut, 1, lines_.front().quantity, false, period());
}

/// What is taken back is posted in red, negative on the side of the estimate.
int StockReceipt::post(int period, Amount amount, std::string_view explanation) {
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

void StockReceipt::record(int type, int period, int voucher) {
  if (type == 0) return;
  Tables& tables = books_.tables();
  tables.estimateRecords.row(tables.estimateRecordKeys.next(), id_, type, yearOf(period),
                             monthOf(period), voucher);
}

void StockReceipt::match(int tag, int entry, int quantity, bool inFull, int period) {
  Tables& tables = books_.tables();
  const Line& line = lines_[static_cast<std::size_t>(entry) - 1];
  tables.matches.row(tables.matchKeys.next(), tag, kind_.tranType, id_, entry, quantity,
                     line.costOf(quantity).local, inFull, yearOf(period), monthOf(period));
}

}  // namespace velmora::cli::demo
