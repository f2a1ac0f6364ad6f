#pragma once

#include "velmora/collections/variant.h"

namespace velmora::settlement {

/// `value` rounded to `places` decimals, halves away from zero. Null counts as 0; a
/// value beyond 922337203685478 either way, more than a money column holds, gives 0.
collections::Decimal RoundAmount(const collections::Variant& value, int places);

/// RoundAmount of the exact quotient. Raises kDivisionByZero.
collections::Decimal roundedQuotient(const collections::Decimal& dividend,
                                     const collections::Decimal& divisor, int places);

}  // namespace velmora::settlement
