#include "settlement/rounding.h"

namespace velmora::settlement {

using collections::Decimal;

namespace {

constexpr Decimal kLargest(std::int64_t{922'337'203'685'478});

}  // namespace

Decimal RoundAmount(const collections::Variant& value, int places) {
  if (value.isNull()) return 0;
  const Decimal amount = value.toDecimal();
  return amount.abs() > kLargest ? Decimal(0) : amount.rounded(places);
}

Decimal roundedQuotient(const Decimal& dividend, const Decimal& divisor, int places) {
  if (!divisor.isZero() && dividend.abs() > divisor.abs() * kLargest) return 0;
  return Decimal::divide(dividend, divisor, places);
}

}  // namespace velmora::settlement
