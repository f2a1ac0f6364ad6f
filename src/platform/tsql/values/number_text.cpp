#include "platform/tsql/values/number_text.h"

#include <fmt/format.h>

#include "platform/tsql/values/value_error.h"
#include "velmora/collections/decimal.h"

namespace velmora::tsql::values {
namespace {

[[noreturn]] void raiseStyle(std::int32_t style, std::string_view from) {
  throw ValueError(
      fmt::format("281: {} is not a valid style number when converting from {} to a "
                  "character string.",
                  style, from));
}

/// "1.5e+06" as "1.5e+006".
std::string withLongExponent(std::string text) {
  const auto exponent = text.find('e');
  if (exponent != std::string::npos && text.size() - exponent == 4) text.insert(exponent + 2, "0");
  return text;
}

}  // namespace

std::string integerText(std::int64_t value, std::int32_t room) {
  std::string text = std::to_string(value);
  return static_cast<std::int64_t>(text.size()) > room ? "*" : text;
}

std::string floatText(double value, std::int32_t style) {
  if (value == 0) value = 0;  // no sign
  switch (style) {
    case 0:
      return withLongExponent(fmt::format("{:.6g}", value));
    case 1:
      return withLongExponent(fmt::format("{:.7e}", value));
    case 2:
      return withLongExponent(fmt::format("{:.15e}", value));
    case 3:
      return withLongExponent(fmt::format("{:.16e}", value));
    default:
      raiseStyle(style, "float");
  }
}

std::string moneyText(std::string_view digits, std::int32_t style) {
  const auto value = collections::Decimal::parse(digits);
  if (style == 2 || style == 126) return value.rescaled(4).toString();
  if (style != 0 && style != 1) raiseStyle(style, "money");
  std::string text = value.rounded(2).rescaled(2).toString();
  if (style == 0) return text;
  const std::size_t first = text.starts_with('-') ? 2 : 1;
  for (std::size_t at = text.find('.'); at >= first + 3; at -= 3) text.insert(at - 3, ",");
  return text;
}

std::string withLeadingZero(std::string_view digits) {
  std::string text(digits);
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  if (text.size() > first && text[first] == '.') text.insert(first, "0");
  return text;
}

std::string_view roomFor(std::string_view text, std::int32_t room, std::string_view target) {
  if (text.size() <= static_cast<std::size_t>(room)) return text;
  throw ValueError(fmt::format(
      "8115: Arithmetic overflow error converting the number {} to data type {}.", text, target));
}

}  // namespace velmora::tsql::values
