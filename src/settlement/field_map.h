#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora::settlement {

/// What settlement reads and writes on an open document; which column that is depends
/// on the amount mode.
enum DocumentField : std::size_t {
  FAmountFor,            ///< amount to be settled
  FAmount,               ///< the same in local currency
  FRemainAmountFor,      ///< open, updated
  FRemainAmount,         ///< open in local currency, updated
  FCheckAmountFor,       ///< settled, updated
  FCheckAmount,          ///< settled in local currency, updated
  FBillRemainAmountFor,  ///< open before this settlement
  FBillRemainAmount,     ///< open in local currency before this settlement
  FQty,                  ///< quantity
  FCheckQty,             ///< settled quantity, updated
  FRemainQty,            ///< open quantity, updated
  FBillRemainQty,        ///< open quantity before this settlement
  FQtyDecimal,           ///< decimals of the quantity
  FPrice,                ///< unit price
};

inline constexpr std::array<std::string_view, 14> kDocumentFields{"FAmountFor",
                                                                  "FAmount",
                                                                  "FRemainAmountFor",
                                                                  "FRemainAmount",
                                                                  "FCheckAmountFor",
                                                                  "FCheckAmount",
                                                                  "FBillRemainAmountFor",
                                                                  "FBillRemainAmount",
                                                                  "FQty",
                                                                  "FCheckQty",
                                                                  "FRemainQty",
                                                                  "FBillRemainQty",
                                                                  "FQtyDecimal",
                                                                  "FPrice"};

/// Column by name of DocumentField; an empty column is not used. `lCheckAmtFor`: 0,
/// rows carry a foreign and a local amount; 1, one amount only; anything else gives an
/// empty map. `lCheckWithQty`: not 0, quantities are settled too (mode 0 only).
collections::DictionaryRef BuildFieldMap(std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty);

}  // namespace velmora::settlement
