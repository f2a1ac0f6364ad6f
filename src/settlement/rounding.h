#pragma once

#include "velmora/collections/fraction.h"

namespace velmora::settlement {

/// `value` rounded to `places` decimals, halves away from zero. A value beyond
/// 922337203685478 either way, more than a money column holds, gives 0. Raises kOverflow
/// when the result has more than 38 digits.
collections::Decimal RoundAmount(const collections::Fraction& value, int places);

}  // namespace velmora::settlement
