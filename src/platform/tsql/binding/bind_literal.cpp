#include <algorithm>
#include <charconv>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/values/code_points.h"

namespace velmora::tsql {
namespace {

using collections::Decimal;

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

Bound bindBinary(const Expression& expression, const HexLiteral& literal, const SqlType& type) {
  std::string digits = literal.digits;
  if (digits.size() % 2 != 0) digits.insert(0, "0");
  const auto byteAt = [&](std::size_t at) {
    unsigned byte = 0;
    std::from_chars(digits.data() + at, digits.data() + at + 2, byte, 16);
    return byte;
  };
  if (type.kind == SqlKind::integer || type.kind == SqlKind::bigInt) {
    // Of a longer constant the last bytes count.
    std::uint64_t value = 0;
    for (std::size_t at = 0; at < digits.size(); at += 2) value = value << 8 | byteAt(at);
    return constantOf(type.kind == SqlKind::integer
                          ? static_cast<std::int64_t>(static_cast<std::int32_t>(value))
                          : static_cast<std::int64_t>(value),
                      type);
  }
  std::string text;
  for (std::size_t at = 0; at < digits.size(); at += 2) text += static_cast<char>(byteAt(at));
  const bool ascii = std::ranges::all_of(text, [](char c) { return c > 0; });
  if (type.kind != SqlKind::varchar || !ascii) {
    refuse(expression.position, "a binary constant as " + declaration(type));
  }
  return cutTo(constantOf(text, SqlType::varchar(static_cast<std::int64_t>(text.size()))), type);
}

Bound bindText(const StringLiteral& literal) {
  const std::size_t size = literal.national ? values::codePoints(literal.value).size()
                                            : values::codePageBytes(literal.value);
  const auto length = static_cast<std::int64_t>(std::max<std::size_t>(size, 1));
  return constantOf(literal.value,
                    literal.national ? SqlType::nvarchar(length) : SqlType::varchar(length));
}

}  // namespace velmora::tsql
