#pragma once

#include <vector>

#include "cli/demo/side_terms.h"
#include "cli/demo/table_writer.h"

namespace velmora::cli::demo {

/// A customer or supplier.
struct Partner {
  int index = 0;      ///< position among the side's partners
  int id = 0;         ///< item id, which is also its detail combination
  Currency currency;  ///< every document of the partner is in this currency
  int department = 0;
  int employee = 0;
};

/// `count` partners of a side, entered as items with their control accounts.
/// `count` is a multiple of kCurrencyCycle. Two may be planted with faults.
std::vector<Partner> enterPartners(ado::ProviderConnection& connection, const SideTerms& side,
                                   int count, Faults faults);

/// Partners that far apart share their currency.
inline constexpr int kCurrencyCycle = 5;

}  // namespace velmora::cli::demo
