#include "platform/collections/uint256.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace velmora::collections {
namespace {

/// A number of any length from 0 bits to `most`, at most 256.
UInt256 anyNumber(int most) {
  const auto word = [] { return uint128{*rc::gen::arbitrary<std::uint64_t>()}; };
  const int dropped = 256 - *rc::gen::inRange(0, most + 1);
  const uint128 high = (word() << 64) | word(), low = (word() << 64) | word();
  if (dropped >= 128) return {0, dropped == 256 ? 0 : low >> (dropped - 128)};
  return {high >> dropped, low};
}

RC_GTEST_PROP(UInt256Property, QuotientTimesDivisorPlusRestIsTheDividend, ()) {
  const UInt256 dividend = anyNumber(256);
  const UInt256 divisor = std::max(anyNumber(255), UInt256{0, 1});
  const auto [quotient, rest] = divide(dividend, divisor);
  RC_ASSERT(rest < divisor);
  // Only one of the two can be longer than 128 bits.
  const bool longDivisor = divisor.high != 0;
  const auto product =
      longDivisor ? multiply(divisor, quotient.low) : multiply(quotient, divisor.low);
  RC_ASSERT(!longDivisor || quotient.high == 0U);
  RC_ASSERT(product.has_value());
  RC_ASSERT(subtract(dividend, *product) == rest);
}

RC_GTEST_PROP(UInt256Property, AProductDividedGivesItsFactorBack, ()) {
  const uint128 a = std::max(anyNumber(128).low, uint128{1}), b = anyNumber(128).low;
  const auto [quotient, rest] = divide(multiply(a, b), UInt256{0, a});
  RC_ASSERT((quotient == UInt256{0, b}));
  RC_ASSERT(rest == UInt256{});
}

}  // namespace
}  // namespace velmora::collections
