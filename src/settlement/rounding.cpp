#include "settlement/rounding.h"

#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;

Decimal RoundAmount(const collections::Fraction& value, int places) {
  constexpr std::int64_t largest = 922'337'203'685'478;
  if (value.exceeds(largest)) return 0;
  if (const auto amount = value.tryRounded(places)) return *amount;
  throw com::Error(com::error::kOverflow, "clsPublic",
                   "an amount with " + std::to_string(places) + " decimals needs more than " +
                       std::to_string(Decimal::kMaxDigits) + " digits");
}

}  // namespace velmora::settlement
