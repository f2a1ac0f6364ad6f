#pragma once

#include <array>
#include <cstddef>

#include "velmora/collections/decimal.h"

namespace velmora::collections {

inline constexpr auto kPowersOfTen = [] {
  std::array<uint128, Decimal::kMaxDigits + 1> powers{};
  powers[0] = 1;
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// 10^exponent, for an exponent of 0 to 38.
constexpr uint128 powerOfTen(int exponent) {
  return kPowersOfTen[static_cast<std::size_t>(exponent)];
}

}  // namespace velmora::collections
