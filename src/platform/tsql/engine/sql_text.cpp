#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

std::string quoted(std::string_view text, char quote) {
  std::string result(1, quote);
  for (const char c : text) {
    if (c == quote) result += quote;
    result += c;
  }
  return result += quote;
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

std::string placeName(std::size_t index) {
  return quoteName("c" + std::to_string(index + 1));
}

std::string castSql(std::string_view sql, std::string_view engineTypeName) {
  std::string result = "CAST(";
  return result.append(sql).append(" AS ").append(engineTypeName).append(")");
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
