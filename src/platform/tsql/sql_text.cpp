#include "platform/tsql/sql_text.h"

#include <algorithm>
#include <charconv>

namespace velmora::tsql {
namespace {

char lowerLetter(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

std::string quoted(std::string_view text, char quote) {
  std::string result(1, quote);
  for (const char c : text) {
    if (c == quote) result += quote;
    result += c;
  }
  return result += quote;
}

std::string doubleText(double value) {
  char buffer[64];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  return {buffer, end.ptr};
}

std::string integerSql(std::int64_t value, const SqlType& type) {
  if (value == INT64_MIN) return castSql("'" + std::to_string(value) + "'", type);
  const std::string digits = value < 0 ? "(" + std::to_string(value) + ")" : std::to_string(value);
  return type.kind == SqlKind::integer ? digits : castSql(digits, type);
}

}  // namespace

std::string quoteName(std::string_view name) {
  return quoted(name, '"');
}
std::string quoteText(std::string_view text) {
  return quoted(text, '\'');
}

std::string engineTableName(std::string_view name) {
  return (name.starts_with('#') ? "temp." : "main.") + quoteName(name);
}

bool sameName(std::string_view a, std::string_view b) noexcept {
  return std::ranges::equal(a, b, {}, lowerLetter, lowerLetter);
}

std::string castSql(std::string_view sql, std::string_view engineTypeName) {
  std::string result = "CAST(";
  return result.append(sql).append(" AS ").append(engineTypeName).append(")");
}

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
  if (type.isDecimal()) return castSql(value.toDecimal().toString(), type);
  if (type.isApproximate()) return castSql(doubleText(value.toDouble()), type);
  if (type.kind == SqlKind::date) return "DATE '" + value.toDate().toDateText() + "'";
  return "TIMESTAMP '" + value.toDate().toString() + "'";
}

std::string join(std::span<const std::string> parts, std::string_view separator) {
  std::string result;
  for (const std::string& part : parts) {
    if (!result.empty()) result += separator;
    result += part;
  }
  return result;
}

}  // namespace velmora::tsql
