#include <algorithm>
#include <charconv>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/errors.h"

namespace velmora::tsql {
namespace {

using collections::Decimal;

std::int64_t characters(std::string_view text) {
  return std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; });
}

/// A decimal constant is just wide enough: leading zeros do not count.
SqlType literalType(const Decimal& number) {
  const std::string digits = number.abs().toString();
  const auto point = digits.find('.');
  const std::string_view whole = std::string_view(digits).substr(0, point);
  const int wholeDigits = whole == "0" ? 0 : static_cast<int>(whole.size());
  return SqlType::decimal(std::max(wholeDigits + number.scale(), 1), number.scale());
}

Bound decimalConstant(const Decimal& number) {
  Bound bound = constantOf(number, literalType(number));
  if (bound.type.precision == Decimal::kMaxDigits) return bound;
  bound.sql = number.toString();
  bound.exact = false;
  return bound;
}

Decimal parseNumber(const Expression& expression, std::string_view text) {
  const auto number = Decimal::tryParse(text);
  if (!number) {
    raiseAt(expression.position, 1007,
            "The number '" + std::string(text) +
                "' is out of the range for numeric "
                "representation (maximum precision 38).");
  }
  return *number;
}

}  // namespace

Bound bindInteger(const Expression& expression, const IntegerLiteral& literal) {
  const Decimal number = parseNumber(expression, literal.digits);
  if (number > Decimal(INT32_MAX)) return decimalConstant(number);
  Bound bound = constantOf(number.toInt64(), SqlType::integer());
  bound.literal = true;
  return bound;
}

Bound bindDecimal(const Expression& expression, const DecimalLiteral& literal) {
  std::string text = literal.text;
  if (text.starts_with('.')) text.insert(0, "0");
  if (text.ends_with('.')) text.pop_back();
  return decimalConstant(parseNumber(expression, text));
}

Bound bindFloat(const Expression& expression, const FloatLiteral& literal) {
  double value = 0;
  const char* const end = literal.text.data() + literal.text.size();
  const auto read = std::from_chars(literal.text.data(), end, value);
  if (read.ec != std::errc() || read.ptr != end) {
    raiseAt(expression.position, 168,
            "The floating point value '" + literal.text + "' is out of the range.");
  }
  return constantOf(value, SqlType::floating());
}

Bound bindText(const StringLiteral& literal) {
  const std::int64_t length = std::max<std::int64_t>(characters(literal.value), 1);
  return constantOf(literal.value,
                    literal.national ? SqlType::nvarchar(length) : SqlType::varchar(length));
}

}  // namespace velmora::tsql
