#include "velmora/collections/fraction.h"

#include <algorithm>

#include "platform/collections/powers_of_ten.h"
#include "platform/collections/uint256.h"
#include "velmora/com/error.h"

namespace velmora::collections {

namespace {

uint128 magnitude(const Decimal& value) {
  return static_cast<uint128>(value.abs().coefficient());
}

/// value * 10^exponent, for an exponent of up to 76; nullopt when it is longer than 256
/// bits.
std::optional<UInt256> tryScaled(const UInt256& value, int exponent) {
  if (exponent <= 0) return value;
  const int first = std::min(exponent, Decimal::kMaxDigits);
  const auto scaled = multiply(value, powerOfTen(first));
  return scaled ? multiply(*scaled, powerOfTen(exponent - first)) : std::nullopt;
}

/// dividend / divisor, halves away from zero; the divisor is below 2^255.
UInt256 divideRounding(const UInt256& dividend, const UInt256& divisor) {
  if (dividend.high == 0 && divisor.high == 0) {
    const uint128 quotient = dividend.low / divisor.low, rest = dividend.low % divisor.low;
    return {0, rest >= divisor.low - rest ? quotient + 1 : quotient};
  }
  const auto result = divide(dividend, divisor);
  const bool up = result.remainder >= subtract(divisor, result.remainder);
  return up ? add(result.quotient, {0, 1}) : result.quotient;
}

}  // namespace

Fraction::Fraction(const Decimal& amount, const Decimal& factor, const Decimal& divisor)
    : amount_(amount), factor_(factor), divisor_(divisor) {
  if (divisor.isZero())
    throw com::Error(com::error::kDivisionByZero, "Velmora.Decimal",
                     amount.toString() + " cannot be divided by zero");
}

bool Fraction::exceeds(std::int64_t limit) const {
  const int exponent = divisor_.scale() - amount_.scale() - factor_.scale();
  const auto value = tryScaled(multiply(magnitude(amount_), magnitude(factor_)), exponent);
  const auto most =
      tryScaled(multiply(magnitude(divisor_), static_cast<uint128>(limit)), -exponent);
  // Only one of the two is scaled, so that only one can be too long.
  if (!value || !most) return !value;
  return *value > *most;
}

std::optional<Decimal> Fraction::tryRounded(int scale) const {
  const int exponent = scale + divisor_.scale() - amount_.scale() - factor_.scale();
  const Decimal zero = Decimal::fromCoefficient(0, scale);
  const auto dividend = tryScaled(multiply(magnitude(amount_), magnitude(factor_)), exponent);
  // By a divisor of at most 38 digits, this has more than 38.
  if (!dividend) return std::nullopt;
  const auto divisor = tryScaled({0, magnitude(divisor_)}, -exponent);
  // The product of two numbers of 38 digits is less than half of this.
  if (!divisor || divisor->high >> 127 != 0) return zero;
  const UInt256 digits = divideRounding(*dividend, *divisor);
  if (digits > UInt256{0, powerOfTen(Decimal::kMaxDigits) - 1}) return std::nullopt;
  const bool negative = amount_.sign() * factor_.sign() * divisor_.sign() < 0;
  const auto coefficient = static_cast<int128>(digits.low);
  return Decimal::fromCoefficient(negative ? -coefficient : coefficient, scale);
}

}  // namespace velmora::collections
