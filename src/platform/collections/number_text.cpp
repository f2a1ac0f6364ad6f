#include "platform/collections/number_text.h"

#include <algorithm>
#include <charconv>

#include "platform/collections/powers_of_ten.h"

namespace velmora::collections {

namespace {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t countDigits(std::string_view text, std::size_t from) {
  std::size_t end = from;
  while (end < text.size() && isDigit(text[end])) ++end;
  return end - from;
}

constexpr bool isSign(char c) {
  return c == '+' || c == '-';
}

/// Length of an exponent at `from`, 0 when there is none.
std::size_t exponentLength(std::string_view text, std::size_t from) {
  if (from == text.size() || (text[from] != 'e' && text[from] != 'E')) return 0;
  const std::size_t sign = from + 1 < text.size() && isSign(text[from + 1]) ? 1 : 0;
  const std::size_t digits = countDigits(text, from + 1 + sign);
  return digits == 0 ? 0 : 1 + sign + digits;
}

/// Beyond every exponent that a Decimal can have, so that a longer one reads as this.
constexpr int kFarExponent = 1'000'000;

int readExponent(std::string_view text) {
  if (text.empty()) return 0;
  text.remove_prefix(text.front() == '+' ? 1 : 0);
  int exponent = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), exponent);
  if (result.ec != std::errc()) return text.front() == '-' ? -kFarExponent : kFarExponent;
  return std::clamp(exponent, -kFarExponent, kFarExponent);
}

/// Gathers the digits of a number; trailing zeros are only counted, because those
/// of the fraction may go when the number would be too long with them.
struct Digits {
  uint128 value = 0;
  int count = 0;  // of `value`
  int zeros = 0;  // behind `value`
  bool tooMany = false;

  void append(char digit) {
    if (digit == '0') {
      if (value != 0) ++zeros;
      return;
    }
    count += zeros + 1;
    if (count > Decimal::kMaxDigits) {
      tooMany = true;
      return;
    }
    value = value * powerOfTen(zeros + 1) + static_cast<uint128>(digit - '0');
    zeros = 0;
  }
};

std::optional<Decimal> tryDecimal(Digits digits, int scale, bool negative) {
  if (digits.tooMany) return std::nullopt;
  if (digits.value == 0)
    return Decimal::fromCoefficient(0, std::clamp(scale, 0, Decimal::kMaxDigits));
  const int excess = std::max(digits.count + digits.zeros, scale) - Decimal::kMaxDigits;
  const int dropped = std::max(0, std::min({excess, digits.zeros, scale}));
  const int missing = std::max(0, -scale);
  scale = std::max(0, scale - dropped);
  digits.zeros += missing - dropped;
  if (digits.count + digits.zeros > Decimal::kMaxDigits || scale > Decimal::kMaxDigits)
    return std::nullopt;
  const auto coefficient = static_cast<int128>(digits.value * powerOfTen(digits.zeros));
  return Decimal::fromCoefficient(negative ? -coefficient : coefficient, scale);
}

}  // namespace

std::string_view leadingNumber(std::string_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  std::size_t end = !text.empty() && isSign(text.front()) ? 1 : 0;
  const std::size_t whole = countDigits(text, end);
  end += whole;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = countDigits(text, end + 1);
    if (whole + fraction == 0) return {};
    end += 1 + fraction;
  } else if (whole == 0) {
    return {};
  }
  return text.substr(0, end + exponentLength(text, end));
}

std::optional<Decimal> tryDecimal(std::string_view number) {
  const std::size_t mantissaEnd = std::min(number.find_first_of("eE"), number.size());
  Digits digits;
  int fraction = 0;
  bool afterPoint = false;
  for (const char c : number.substr(0, mantissaEnd)) {
    if (c == '.') afterPoint = true;
    if (!isDigit(c)) continue;
    digits.append(c);
    if (afterPoint) ++fraction;
  }
  const int exponent = readExponent(number.substr(std::min(mantissaEnd + 1, number.size())));
  return tryDecimal(digits, fraction - exponent, number.starts_with('-'));
}

}  // namespace velmora::collections
