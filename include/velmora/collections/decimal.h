#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::collections {

__extension__ typedef __int128 int128;
__extension__ typedef unsigned __int128 uint128;

/// An exact decimal number: coefficient / 10^scale, at most 38 digits. Money is
/// always one of these. Results that need more than 38 digits raise
/// com::Error kOverflow; nothing is ever rounded unless asked for.
class Decimal {
 public:
  static constexpr int kMaxDigits = 38;

  constexpr Decimal() = default;
  constexpr Decimal(std::int64_t value) : coefficient_(value) {}  // NOLINT: implicit by design
  /// Throws kOverflow when |coefficient| has more than 38 digits or scale is not in 0..38.
  static Decimal fromCoefficient(int128 coefficient, int scale);
  /// Whole-text parse of [+-]digits[.digits][e[+-]digits], blanks around it allowed.
  /// nullopt when the text is anything else or does not fit 38 digits.
  static std::optional<Decimal> tryParse(std::string_view text);
  /// As tryParse, raising kTypeMismatch that names the text.
  static Decimal parse(std::string_view text);
  /// The decimal nearest to the shortest text of `value`. Raises kOverflow.
  static Decimal fromDouble(double value);

  constexpr int128 coefficient() const { return coefficient_; }
  constexpr int scale() const { return scale_; }

  constexpr bool isZero() const { return coefficient_ == 0; }
  constexpr int sign() const { return coefficient_ == 0 ? 0 : (coefficient_ < 0 ? -1 : 1); }

  Decimal operator-() const;
  Decimal abs() const;
  friend Decimal operator+(const Decimal& a, const Decimal& b);
  friend Decimal operator-(const Decimal& a, const Decimal& b);
  /// Exact; trailing zeros beyond 38 digits are dropped before kOverflow is raised.
  friend Decimal operator*(const Decimal& a, const Decimal& b);
  /// Quotient rounded half away from zero at `scale` decimals. Raises kDivisionByZero.
  static Decimal divide(const Decimal& dividend, const Decimal& divisor, int scale);
  Decimal& operator+=(const Decimal& other) { return *this = *this + other; }
  Decimal& operator-=(const Decimal& other) { return *this = *this - other; }

  /// Rounded half away from zero to `places` decimals (places may be negative);
  /// the scale becomes max(places, 0) if it was larger.
  Decimal rounded(int places) const;
  /// Cut towards zero to `places` decimals.
  Decimal truncated(int places) const;
  /// The same value with trailing zeros of the fraction removed.
  Decimal normalized() const;
  /// The same value with exactly `scale` decimals, rounding half away if fewer.
  Decimal rescaled(int scale) const;

  /// Digits as stored, for instance "12.50"; never an exponent.
  std::string toString() const;
  double toDouble() const;
  /// Whole part; raises kOverflow when it does not fit.
  std::int64_t toInt64() const;

  /// By value: 1.5 equals 1.50.
  friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b);
  friend bool operator==(const Decimal& a, const Decimal& b) { return std::is_eq(a <=> b); }

 private:
  friend class Variant;  // stores a decimal's parts
  constexpr Decimal(int128 coefficient, int scale) : coefficient_(coefficient), scale_(scale) {}

  int128 coefficient_ = 0;
  int scale_ = 0;
};

}  // namespace velmora::collections
