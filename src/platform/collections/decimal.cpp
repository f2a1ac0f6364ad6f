#include "velmora/collections/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "platform/collections/number_text.h"
#include "platform/collections/powers_of_ten.h"
#include "platform/collections/uint256.h"
#include "velmora/collections/fraction.h"
#include "velmora/com/error.h"

namespace velmora::collections {

namespace {

constexpr uint128 kMaxCoefficient = powerOfTen(Decimal::kMaxDigits) - 1;

[[noreturn]] void throwOverflow(const std::string& what) {
  throw com::Error(com::error::kOverflow, "Velmora.Decimal", what);
}

std::string described(const Decimal& a, const char* operation, const Decimal& b) {
  return a.toString() + " " + operation + " " + b.toString() + " needs more than " +
         std::to_string(Decimal::kMaxDigits) + " digits";
}

constexpr uint128 magnitude(int128 value) {
  return value < 0 ? uint128{0} - static_cast<uint128>(value) : static_cast<uint128>(value);
}

constexpr int128 withSign(uint128 value, bool negative) {
  return negative ? -static_cast<int128>(value) : static_cast<int128>(value);
}

constexpr bool fitsInt64(int128 value) {
  return value == static_cast<std::int64_t>(value);
}

/// The coefficient of `value` at a larger scale.
UInt256 aligned(const Decimal& value, int scale) {
  return multiply(magnitude(value.coefficient()), powerOfTen(scale - value.scale()));
}

/// The decimal digits * 10^-scale; trailing zeros of the fraction go when it
/// would not fit otherwise. nullopt when it still does not fit.
std::optional<Decimal> tryFit(UInt256 digits, int scale, bool negative) {
  constexpr UInt256 ten{0, 10};
  while (scale > 0 && (scale > Decimal::kMaxDigits || digits > UInt256{0, kMaxCoefficient})) {
    const auto shorter = divide(digits, ten);
    if (shorter.remainder != UInt256{}) return std::nullopt;
    digits = shorter.quotient;
    --scale;
  }
  if (digits > UInt256{0, kMaxCoefficient}) return std::nullopt;
  return Decimal::fromCoefficient(withSign(digits.low, negative), scale);
}

/// Whether a + b has at most 38 digits; then writes it. The sum of two 38-digit
/// coefficients can be longer than 127 bits, so it is made of unsigned numbers.
bool trySum(int128 a, int128 b, int128& sum) {
  sum = static_cast<int128>(static_cast<uint128>(a) + static_cast<uint128>(b));
  const bool wrapped = (a < 0) == (b < 0) && (sum < 0) != (a < 0);
  return !wrapped && magnitude(sum) <= kMaxCoefficient;
}

/// The coefficient of `value` at a scale that is not smaller, for the values of
/// everyday business: then it is below 2^123, and so two of them can be added.
bool tryShortUnits(const Decimal& value, int scale, int128& units) {
  constexpr int kPowersBelow60Bits = 18;
  const int gap = scale - value.scale();
  if (!fitsInt64(value.coefficient()) || gap > kPowersBelow60Bits) return false;
  units = value.coefficient() * static_cast<int128>(powerOfTen(gap));
  return true;
}

std::optional<Decimal> tryAddLong(const Decimal& a, const Decimal& b) {
  const int scale = std::max(a.scale(), b.scale());
  const UInt256 x = aligned(a, scale), y = aligned(b, scale);
  const bool aNegative = a.sign() < 0, bNegative = b.sign() < 0;
  if (aNegative == bNegative) return tryFit(add(x, y), scale, aNegative);
  return x < y ? tryFit(subtract(y, x), scale, bNegative)
               : tryFit(subtract(x, y), scale, aNegative);
}

/// digits / 10^places, halves away from zero. A number of at most 38 digits has
/// nothing left of it when more than 38 places go.
uint128 dropRounding(uint128 digits, int places) {
  if (places > Decimal::kMaxDigits) return 0;
  const uint128 unit = powerOfTen(places);
  const uint128 quotient = digits / unit, rest = digits % unit;
  return rest >= unit - rest ? quotient + 1 : quotient;
}

/// Whether a point has no digit on one of its sides.
bool hasBarePoint(std::string_view number) {
  const auto isDigit = [&](std::size_t i) {
    return i < number.size() && number[i] >= '0' && number[i] <= '9';
  };
  const std::size_t point = number.find('.');
  return point != std::string_view::npos && !(isDigit(point - 1) && isDigit(point + 1));
}

/// A number too small for 38 decimals, such as "1.5e-40", rounded to them.
Decimal fromTinyText(std::string_view text) {
  const std::size_t mark = text.find('e');
  const Decimal mantissa = Decimal::parse(text.substr(0, mark));
  int exponent = 0;
  std::from_chars(text.data() + mark + 1, text.data() + text.size(), exponent);
  const int dropped =
      std::min(mantissa.scale() - exponent - Decimal::kMaxDigits, Decimal::kMaxDigits + 1);
  const uint128 digits = dropRounding(magnitude(mantissa.coefficient()), dropped);
  return Decimal::fromCoefficient(withSign(digits, mantissa.sign() < 0), Decimal::kMaxDigits);
}

void checkScale(int scale) {
  if (scale >= 0 && scale <= Decimal::kMaxDigits) return;
  throwOverflow("scale " + std::to_string(scale) + " is out of range 0 to " +
                std::to_string(Decimal::kMaxDigits));
}

}  // namespace

Decimal Decimal::fromCoefficient(int128 coefficient, int scale) {
  checkScale(scale);
  if (magnitude(coefficient) > kMaxCoefficient)
    throwOverflow("a coefficient has more than " + std::to_string(kMaxDigits) + " digits");
  Decimal value;
  value.coefficient_ = coefficient;
  value.scale_ = scale;
  return value;
}

std::optional<Decimal> Decimal::tryParse(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  if (leadingNumber(text).size() != text.size() || hasBarePoint(text)) return std::nullopt;
  return tryDecimal(text);
}

Decimal Decimal::parse(std::string_view text) {
  if (const auto value = tryParse(text)) return *value;
  throw com::Error(com::error::kTypeMismatch, "Velmora.Decimal",
                   "'" + std::string(text) + "' is not a decimal number of at most " +
                       std::to_string(kMaxDigits) + " digits");
}

Decimal Decimal::fromDouble(double value) {
  if (!std::isfinite(value)) throwOverflow("a number that is not finite has no decimal value");
  std::array<char, 32> buffer;
  const auto end =
      std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::scientific);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
  if (const auto decimal = tryDecimal(text)) return decimal->normalized();
  if (std::abs(value) >= 1) throwOverflow(std::string(text) + " needs more than 38 digits");
  return fromTinyText(text);
}

Decimal Decimal::operator-() const {
  Decimal negated = *this;
  negated.coefficient_ = -coefficient_;
  return negated;
}

Decimal Decimal::abs() const {
  return coefficient_ < 0 ? -*this : *this;
}

Decimal operator+(const Decimal& a, const Decimal& b) {
  Decimal sum;
  sum.scale_ = std::max(a.scale_, b.scale_);
  if (a.scale_ == b.scale_) {
    if (trySum(a.coefficient_, b.coefficient_, sum.coefficient_)) return sum;
  } else if (tryShortUnits(a, sum.scale_, sum.coefficient_)) {
    if (int128 units = 0; tryShortUnits(b, sum.scale_, units)) {
      sum.coefficient_ += units;
      return sum;
    }
  }
  if (const auto longSum = tryAddLong(a, b)) return *longSum;
  throwOverflow(described(a, "+", b));
}

Decimal operator-(const Decimal& a, const Decimal& b) {
  return a + -b;
}

Decimal operator*(const Decimal& a, const Decimal& b) {
  const int scale = a.scale_ + b.scale_;
  if (fitsInt64(a.coefficient_) && fitsInt64(b.coefficient_) && scale <= Decimal::kMaxDigits) {
    Decimal product;
    product.coefficient_ = a.coefficient_ * b.coefficient_;
    product.scale_ = scale;
    return product;
  }
  const UInt256 digits = multiply(magnitude(a.coefficient_), magnitude(b.coefficient_));
  if (const auto product = tryFit(digits, scale, a.sign() * b.sign() < 0)) return *product;
  throwOverflow(described(a, "*", b));
}

Decimal Decimal::divide(const Decimal& dividend, const Decimal& divisor, int scale) {
  if (const auto quotient = Fraction(dividend, 1, divisor).tryRounded(scale)) return *quotient;
  throwOverflow(described(dividend, "/", divisor));
}

Decimal Decimal::rounded(int places) const {
  if (places >= scale_) return *this;
  // The coefficient counts units of 10^-scale; beyond 38 places nothing is left.
  const int dropped =
      static_cast<int>(std::min<std::int64_t>(std::int64_t{scale_} - places, kMaxDigits + 1));
  const uint128 digits = dropRounding(magnitude(coefficient_), dropped);
  if (digits == 0) return fromCoefficient(0, std::max(places, 0));
  if (const auto value = tryFit(multiply(digits, powerOfTen(std::max(-places, 0))),
                                std::max(places, 0), coefficient_ < 0))
    return *value;
  throwOverflow(toString() + " rounded to " + std::to_string(places) +
                " places needs more than 38 digits");
}

Decimal Decimal::truncated(int places) const {
  if (places >= scale_) return *this;
  const int scale = std::max(places, 0);
  const std::int64_t dropped = std::int64_t{scale_} - places;
  if (dropped > kMaxDigits) return fromCoefficient(0, scale);
  const auto unit = static_cast<int128>(powerOfTen(static_cast<int>(dropped)));
  const auto unitBack = static_cast<int128>(powerOfTen(std::max(-places, 0)));
  return fromCoefficient(coefficient_ / unit * unitBack, scale);
}

Decimal Decimal::normalized() const {
  Decimal value = *this;
  while (value.scale_ > 0 && value.coefficient_ % 10 == 0) {
    value.coefficient_ /= 10;
    --value.scale_;
  }
  return value;
}

Decimal Decimal::rescaled(int scale) const {
  checkScale(scale);
  if (scale <= scale_) return rounded(scale);
  if (int128 units = 0; tryShortUnits(*this, scale, units)) return fromCoefficient(units, scale);
  const UInt256 digits = aligned(*this, scale);
  if (digits > UInt256{0, kMaxCoefficient})
    throwOverflow(toString() + " with " + std::to_string(scale) +
                  " decimals needs more than 38 digits");
  return fromCoefficient(withSign(digits.low, coefficient_ < 0), scale);
}

std::string Decimal::toString() const {
  std::array<char, kMaxDigits + 3> buffer;  // sign, point, a zero before the point
  char* const end = buffer.data() + buffer.size();
  char* begin = end;
  uint128 rest = magnitude(coefficient_);
  for (int written = 0; rest != 0 || written <= scale_; ++written) {
    if (written == scale_ && scale_ > 0) *--begin = '.';
    *--begin = static_cast<char>('0' + static_cast<int>(rest % 10));
    rest /= 10;
  }
  if (coefficient_ < 0) *--begin = '-';
  return {begin, end};
}

double Decimal::toDouble() const {
  // Both exact as doubles, so that the quotient is rounded once.
  constexpr int128 kExact = int128{1} << 53;
  constexpr int kExactPower = 22;
  if (coefficient_ >= -kExact && coefficient_ <= kExact && scale_ <= kExactPower)
    return static_cast<double>(coefficient_) / static_cast<double>(powerOfTen(scale_));
  const std::string text = toString();
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::int64_t Decimal::toInt64() const {
  const int128 whole = coefficient_ / static_cast<int128>(powerOfTen(scale_));
  if (!fitsInt64(whole)) throwOverflow(toString() + " does not fit a 64-bit integer");
  return static_cast<std::int64_t>(whole);
}

std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) {
  if (a.scale_ == b.scale_) return a.coefficient_ <=> b.coefficient_;
  if (a.sign() != b.sign()) return a.sign() <=> b.sign();
  const int scale = std::max(a.scale_, b.scale_);
  const auto order = aligned(a, scale) <=> aligned(b, scale);
  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in <=>
  return a.sign() < 0 ? 0 <=> order : order;
}

}  // namespace velmora::collections
