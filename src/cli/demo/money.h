#pragma once

#include <cstdint>

namespace velmora::cli::demo {

/// An amount of money in hundredths. Every demonstration currency has two decimals.
struct Money {
  std::int64_t cents = 0;

  constexpr Money operator-() const { return {-cents}; }
  friend constexpr Money operator+(Money a, Money b) { return {a.cents + b.cents}; }
  friend constexpr Money operator-(Money a, Money b) { return {a.cents - b.cents}; }
  friend constexpr bool operator==(Money, Money) = default;
};

/// An amount as documents carry it: in their own currency and in the local one.
struct Amount {
  Money original;
  Money local;

  constexpr Amount operator-() const { return {-original, -local}; }
  friend constexpr Amount operator+(Amount a, Amount b) {
    return {a.original + b.original, a.local + b.local};
  }
  friend constexpr Amount operator-(Amount a, Amount b) { return a + -b; }
  Amount& operator+=(Amount other) { return *this = *this + other; }
  friend constexpr bool operator==(Amount, Amount) = default;
};

/// A currency with its rate, as entered in t_Currency by the basic data scripts.
struct Currency {
  int id = 1;
  std::int64_t rate = 10'000;  ///< local units for 10,000 of this currency

  /// The amount with its local value, rounded half up. `original` is not negative.
  constexpr Amount amount(Money original) const {
    return {original, {(original.cents * rate + 5'000) / 10'000}};
  }
};

inline constexpr Currency kRenminbi{1, 10'000};
inline constexpr Currency kHongKongDollar{2, 8'814};
inline constexpr Currency kUsDollar{3, 68'275};

}  // namespace velmora::cli::demo
