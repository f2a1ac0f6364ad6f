#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "velmora/collections/decimal.h"

namespace velmora::collections {

/// Unsigned 256-bit number, for the few decimal results whose way there is longer
/// than 128 bits: products and scaled dividends of two 38-digit coefficients.
struct UInt256 {
  uint128 high = 0;
  uint128 low = 0;

  friend constexpr bool operator==(const UInt256&, const UInt256&) = default;
  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in <=>
  friend constexpr auto operator<=>(const UInt256&, const UInt256&) = default;
};

/// The full product.
constexpr UInt256 multiply(uint128 a, uint128 b) {
  constexpr uint128 mask = std::numeric_limits<std::uint64_t>::max();
  const uint128 aLow = a & mask, aHigh = a >> 64, bLow = b & mask, bHigh = b >> 64;
  const uint128 lowest = aLow * bLow;
  const uint128 middle = aHigh * bLow + (lowest >> 64);  // cannot overflow: (2^64-1)*2^64
  const uint128 cross = aLow * bHigh + (middle & mask);
  return {aHigh * bHigh + (middle >> 64) + (cross >> 64), (cross << 64) | (lowest & mask)};
}

/// nullopt when the product is longer than 256 bits.
constexpr std::optional<UInt256> multiply(const UInt256& a, uint128 b) {
  const UInt256 low = multiply(a.low, b);
  const UInt256 high = multiply(a.high, b);
  UInt256 product{high.low + low.high, low.low};
  if (high.high != 0 || product.high < high.low) return std::nullopt;
  return product;
}

/// The sum; both must be below 2^255.
constexpr UInt256 add(const UInt256& a, const UInt256& b) {
  UInt256 sum{a.high + b.high, a.low + b.low};
  if (sum.low < a.low) ++sum.high;
  return sum;
}

/// a - b; `a` must not be less than `b`.
constexpr UInt256 subtract(const UInt256& a, const UInt256& b) {
  return {a.high - b.high - (a.low < b.low ? 1U : 0U), a.low - b.low};
}

struct UInt256Division {
  UInt256 quotient;
  UInt256 remainder;
};

/// Long division in 64-bit digits, for a divisor of one such digit.
constexpr UInt256Division divideByDigit(const UInt256& dividend, std::uint64_t divisor) {
  UInt256Division result;
  uint128 rest = 0;
  for (int digit = 3; digit >= 0; --digit) {
    const int shift = digit % 2 * 64;
    const uint128 word = digit >= 2 ? dividend.high : dividend.low;
    rest = (rest << 64) | static_cast<std::uint64_t>(word >> shift);
    (digit >= 2 ? result.quotient.high : result.quotient.low) |= (rest / divisor) << shift;
    rest %= divisor;
  }
  result.remainder.low = rest;
  return result;
}

/// Division; the divisor must be below 2^255 and not 0.
constexpr UInt256Division divide(const UInt256& dividend, const UInt256& divisor) {
  if (divisor <= UInt256{0, std::numeric_limits<std::uint64_t>::max()})
    return divideByDigit(dividend, static_cast<std::uint64_t>(divisor.low));
  UInt256Division result;
  UInt256& rest = result.remainder;
  for (int bit = 255; bit >= 0; --bit) {
    const uint128 word = bit >= 128 ? dividend.high : dividend.low;
    rest = add(rest, rest);
    rest.low |= (word >> (bit % 128)) & 1;
    if (rest < divisor) continue;
    rest = subtract(rest, divisor);
    (bit >= 128 ? result.quotient.high : result.quotient.low) |= uint128{1} << (bit % 128);
  }
  return result;
}

}  // namespace velmora::collections
