#pragma once

#include "cli/demo/documents.h"

namespace velmora::cli::demo {

/// What one document's row of a settlement says beyond the document itself.
struct SettlementRow {
  int settlement = 0;  ///< shared by the rows of one settlement
  bool movesAccounts = false;
  bool transfer = false;
  int transferId = 0;
  int withinSide = -1;  ///< 1 for write-offs within the side; -1: no write-off
  int writeOff = 0;
  bool returned = false;
  int voucher = 0;
  std::string_view explanation = {};
};

void addSettlementRow(Books& books, const Occasion& occasion, const Document& document,
                      const SettlementRow& row);

}  // namespace velmora::cli::demo
