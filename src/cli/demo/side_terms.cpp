#include "cli/demo/side_terms.h"

namespace velmora::cli::demo {

namespace {

constexpr SideTerms kReceivables{
    .side = Side::kReceivables,
    .frp = 1,
    .itemClass = 1,
    .internalIndicator = "ar",
    .otherBillType = 1,
    .invoiceType = 3,
    .receiptType = 5,
    .classTypes = {1000000, 1000021, 1000005, 1000014, 1000015, 1000500, 1000520},
    .cashModuleClass = 1006004,
    .trade = 1122,
    .advance = 2203,
    .other = 1221,
    .goodsEstimate = 0,
    .processingEstimate = 0,
    .invoiceCounter = 6001,
    .otherCounter = 6051,
    .bills = 1121,
    .creditStyle = 101,
    .expenseTransaction = 78,
    .expenseSource = 8,
    .prefixes = {"XSFP", "QTYS", "FYYS", "SKD", "YSD", "YSTK", "YSPJ", "YSZZ", "YSZX", "HZ", "YSTP",
                 "YSQC"},
};

constexpr SideTerms kPayables{
    .side = Side::kPayables,
    .frp = 0,
    .itemClass = 8,
    .internalIndicator = "ap",
    .otherBillType = 2,
    .invoiceType = 4,
    .receiptType = 6,
    .classTypes = {1000003, 1000022, 1000016, 1000018, 1000017, 1000502, 1000521},
    .cashModuleClass = 1006002,
    .trade = 2202,
    .advance = 1123,
    .other = 2241,
    .goodsEstimate = 2204,
    .processingEstimate = 2205,
    .invoiceCounter = 1405,
    .otherCounter = 6602,
    .bills = 2201,
    .creditStyle = 252,
    .expenseTransaction = 77,
    .expenseSource = 4,
    .prefixes = {"CGFP", "QTYF", "FYYF", "FKD", "YFD", "YFTK", "YFPJ", "YFZZ", "YFZX", "", "YFTP",
                 "YFQC"},
};

}  // namespace

const SideTerms& termsOf(Side side) {
  return side == Side::kReceivables ? kReceivables : kPayables;
}

std::vector<int> controlAccounts(const SideTerms& side) {
  std::vector<int> accounts{side.trade, side.advance, side.other};
  if (!side.receivables())
    accounts.insert(accounts.end(), {side.goodsEstimate, side.processingEstimate});
  return accounts;
}

}  // namespace velmora::cli::demo
