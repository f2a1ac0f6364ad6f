#pragma once

#include <span>

#include "cli/demo/operations.h"

namespace velmora::cli::demo {

/// A fault that the closing check of the current period finds, or the comparison with
/// the ledger alone.
struct FaultKind {
  int checkItem = 0;  ///< 0: the comparison
  int documents = 0;  ///< documents it takes
  /// Findings that planting it once causes on the side that is checked.
  int findings = 1;
  /// Expense invoices are listed whichever side is checked.
  bool onBothSides = false;
  void (*plant)(Books& books, const Occasion& occasion) = nullptr;
};

/// Every kind of fault of a side, in the order of the check items.
std::vector<FaultKind> faultsOf(const SideTerms& side);

/// Position in the list of closing checks, from 1; 0 for what is on no list.
inline constexpr int kCheckItems = 14;
std::string_view checkItemName(int checkItem);

}  // namespace velmora::cli::demo
