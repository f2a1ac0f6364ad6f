#include "platform/tsql/values/text_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "platform/collections/powers_of_ten.h"
#include "platform/tsql/values/value_error.h"
#include "velmora/collections/decimal.h"
#include "velmora/collections/letter_case.h"

namespace velmora::tsql::values {
namespace {

using collections::Decimal;
using collections::equalsIgnoringCase;

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Cuts the sign off; true: it was a minus.
bool takeSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return negative;
}

std::size_t digitsAt(std::string_view text) {
  const auto* const end = std::ranges::find_if_not(text, isDigit);
  return static_cast<std::size_t>(end - text.begin());
}

/// Whether an unsigned text is digits with a point, perhaps: "5", "5." and ".5".
bool isPlainNumber(std::string_view text) {
  const std::size_t whole = digitsAt(text);
  text.remove_prefix(whole);
  if (text.empty()) return whole > 0;
  if (!text.starts_with('.')) return false;
  text.remove_prefix(1);
  return digitsAt(text) == text.size() && whole + text.size() > 0;
}

struct Range {
  std::string_view type;
  std::int64_t least, most;
  std::string_view error;
};

constexpr auto kRanges = std::to_array<Range>({
    {"tinyint", 0, 255, "244: The conversion of the text value '{}' overflowed an INT1 column."},
    {"smallint", std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max(),
     "244: The conversion of the text value '{}' overflowed an INT2 column."},
    {"int", std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(),
     "248: The conversion of the text value '{}' overflowed an int column."},
    {"bigint", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
     "8115: Arithmetic overflow error converting the text value '{}' to data type bigint."},
});

/// A decimal of any number of digits, rounded to `scale`; nullopt beyond 38 digits.
std::optional<Decimal> roundedNumber(std::string_view digits, bool negative, int scale) {
  const auto point = std::min(digits.find('.'), digits.size());
  std::string_view whole = digits.substr(0, point);
  std::string fraction(point < digits.size() ? digits.substr(point + 1) : "");
  while (whole.starts_with('0')) whole.remove_prefix(1);
  const auto kept = static_cast<std::size_t>(scale);
  const bool up = fraction.size() > kept && fraction[kept] >= '5';
  fraction.resize(kept, '0');
  if (whole.size() + kept > Decimal::kMaxDigits) return std::nullopt;
  std::string text = std::string(whole) + fraction;
  if (text.empty()) text = "0";
  const auto coefficient = Decimal::parse(text).coefficient() + (up ? 1 : 0);
  if (static_cast<collections::uint128>(coefficient) >=
      collections::powerOfTen(Decimal::kMaxDigits)) {
    return std::nullopt;
  }
  return Decimal::fromCoefficient(negative ? -coefficient : coefficient, scale);
}

bool fits(const Decimal& number, int precision) {
  const auto coefficient = number.abs().toString();
  const auto digits = static_cast<int>(std::ranges::count_if(coefficient, isDigit)) -
                      (coefficient.starts_with("0") ? 1 : 0);
  return digits <= precision;
}

/// The currency signs that money takes, in UTF-8.
constexpr auto kCurrencies = std::to_array<std::string_view>(
    {"$", "\u00A2", "\u00A3", "\u00A4", "\u00A5", "\u20AC", "\u20A9", "\uFFE5", "\uFFE1"});

void takeCurrency(std::string_view& text) {
  for (const auto sign : kCurrencies) {
    if (!text.starts_with(sign)) continue;
    text = trimmed(text.substr(sign.size()));
    return;
  }
}

}  // namespace

std::int64_t wholeNumber(std::string_view text, std::string_view target) {
  std::string_view digits = trimmed(text);
  const auto fail = [&](std::string_view error) {
    return ValueError(fmt::format(fmt::runtime(error), text, target));
  };
  const bool negative = takeSign(digits);
  if (digits.empty()) return 0;
  if (digitsAt(digits) != digits.size())
    throw fail("245: Conversion failed when converting the text value '{}' to data type {}.");
  const auto* const range = std::ranges::find(kRanges, target, &Range::type);
  const std::string signedDigits = (negative ? "-" : "") + std::string(digits);
  std::int64_t number = 0;
  const auto read =
      std::from_chars(signedDigits.data(), signedDigits.data() + signedDigits.size(), number);
  if (read.ec != std::errc() || number < range->least || number > range->most)
    throw fail(range->error);
  return number;
}

std::int32_t bitNumber(std::string_view text) {
  const std::string_view word = trimmed(text);
  if (equalsIgnoringCase(word, "true")) return 1;
  if (equalsIgnoringCase(word, "false")) return 0;
  std::string_view digits = word;
  takeSign(digits);
  if (digitsAt(digits) != digits.size())
    throw ValueError(fmt::format(
        "245: Conversion failed when converting the text value '{}' to data type bit.", text));
  return digits.find_first_not_of('0') == std::string_view::npos ? 0 : 1;
}

double floatNumber(std::string_view text) {
  std::string_view rest = trimmed(text);
  if (rest.empty()) return 0;
  const auto fail = [&](std::string_view error) {
    return ValueError(fmt::format(fmt::runtime(error), text));
  };
  const bool negative = takeSign(rest);
  std::string number(rest);
  const auto exponent = number.find_first_of("eEdD");
  if (exponent != std::string::npos) number[exponent] = 'e';
  std::string_view power =
      exponent == std::string::npos ? "0" : std::string_view(number).substr(exponent + 1);
  takeSign(power);
  if (!isPlainNumber(std::string_view(number).substr(0, exponent)) || power.empty() ||
      digitsAt(power) != power.size())
    throw fail("8114: Error converting the text value '{}' to data type float.");
  const auto plus = number.find("e+");
  if (plus != std::string::npos) number.erase(plus + 1, 1);
  double value = 0;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  const bool tiny = number.find("e-") != std::string::npos;
  if (read.ec == std::errc::result_out_of_range && !tiny)
    throw fail("232: Arithmetic overflow error for type float, value = {}.");
  if (read.ec != std::errc()) value = 0;
  return negative ? -value : value;
}

std::string decimalDigits(std::string_view text, std::int32_t precision, std::int32_t scale) {
  std::string_view digits = trimmed(text);
  const bool negative = takeSign(digits);
  if (!isPlainNumber(digits))
    throw ValueError(
        fmt::format("8114: Error converting the text value '{}' to data type numeric.", text));
  const auto number = roundedNumber(digits, negative, scale);
  if (!number || !fits(*number, precision))
    throw ValueError(
        fmt::format("8115: Arithmetic overflow error converting the text value '{}' to data type "
                    "numeric({},{}).",
                    text, precision, scale));
  return number->toString();
}

std::string moneyDigits(std::string_view text) {
  std::string_view rest = trimmed(text);
  bool negative = takeSign(rest);
  takeCurrency(rest);
  if (!negative) negative = takeSign(rest);
  std::string digits(rest);
  std::erase(digits, ',');
  if (digits.empty()) return "0";
  const auto number = isPlainNumber(digits) ? roundedNumber(digits, negative, 4) : std::nullopt;
  if (!number)
    throw ValueError(fmt::format(
        "235: Cannot convert the text value '{}' to money. The value has incorrect syntax.", text));
  return number->toString();
}

}  // namespace velmora::tsql::values
