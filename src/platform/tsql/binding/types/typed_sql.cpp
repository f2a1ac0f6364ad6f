#include "platform/tsql/binding/types/typed_sql.h"

#include <charconv>
#include <cstdint>

#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

std::string doubleText(double value) {
  char buffer[64];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  return {buffer, end.ptr};
}

std::string integerSql(std::int64_t value, const SqlType& type) {
  // The engine reads a minus apart from its digits, which have no room without it.
  if (value == INT64_MIN || value == INT32_MIN) {
    return castSql("'" + std::to_string(value) + "'", type);
  }
  const std::string digits = value < 0 ? "(" + std::to_string(value) + ")" : std::to_string(value);
  return type.kind == SqlKind::integer ? digits : castSql(digits, type);
}

/// As a text where the engine would read so many digits as a DOUBLE.
std::string decimalSql(const collections::Decimal& value, const SqlType& type) {
  const std::string digits = value.toString();
  return castSql(type.precision < collections::Decimal::kMaxDigits ? digits : quoteText(digits),
                 type);
}

}  // namespace

std::string castSql(std::string_view sql, const SqlType& type) {
  return castSql(sql, engineType(type));
}

std::string literalSql(const collections::Variant& value, const SqlType& type) {
  if (value.isNull()) return castSql("NULL", type);
  if (type.isText()) return quoteText(value.text());
  if (type.isInteger()) {
    return integerSql(
        value.type() == collections::VarType::boolean ? value.toBool() : value.toInt64(), type);
  }
  if (type.isDecimal()) return decimalSql(value.toDecimal(), type);
  if (type.isApproximate()) return castSql(doubleText(value.toDouble()), type);
  if (type.kind == SqlKind::date) return "DATE '" + value.toDate().toDateText() + "'";
  return "TIMESTAMP '" + value.toDate().toString() + "'";
}

std::string raiseSql(std::string_view error, const SqlType& type) {
  return castSql("error(" + quoteText(error) + ")", type);
}

}  // namespace velmora::tsql
