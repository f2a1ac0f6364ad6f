#pragma once

#include <optional>
#include <string>

#include "velmora/collections/variant.h"

namespace velmora::settlement {

/// The number in `value`: any number, a text that is one as a whole, Empty as 0.
/// Nothing for all others: half a number must not be settled.
std::optional<collections::Decimal> tryNumber(const collections::Variant& value);

/// Raises that `value` is no number; `where` names its row and column.
[[noreturn]] void failNumber(const collections::Variant& value, const std::string& where);

/// The number in `value` as tryNumber finds it; raises otherwise, `where()` naming its row
/// and column.
template <class Where>
collections::Decimal numberIn(const collections::Variant& value, Where where) {
  // Nearly every value is one, and settlement reads millions: it is not copied once more.
  if (value.isNumeric()) return value.toDecimal();
  if (const auto number = tryNumber(value)) return *number;
  failNumber(value, where());
}

[[noreturn]] void failPlaces(const collections::Decimal& number, const std::string& where);

/// `number` as a number of decimals; `where()` names its row and column when it is not
/// within 0 to 38.
template <class Where>
int decimalPlaces(const collections::Decimal& number, Where where) {
  if (number.sign() < 0 || number > collections::Decimal(collections::Decimal::kMaxDigits))
    failPlaces(number, where());
  return static_cast<int>(number.toInt64());
}

}  // namespace velmora::settlement
