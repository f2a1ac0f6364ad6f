#include "platform/tsql/engine/sql_text.h"

#include "platform/tsql/syntax/text_scan.h"

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

bool isBracketed(std::string_view name) {
  return name.starts_with('[') && name.ends_with(']') && name.size() > 1;
}

std::string_view withoutBrackets(std::string_view name) {
  while (isBracketed(name)) name = name.substr(1, name.size() - 2);
  return name;
}

}  // namespace

std::string quoteName(std::string_view name) {
  return quoted(name, '"');
}
std::string quoteText(std::string_view text) {
  return quoted(text, '\'');
}

std::string engineTableName(std::string_view name) {
  return (name.starts_with('#') || name.starts_with('@') ? "temp." : "main.") + quoteName(name);
}

std::string engineColumnName(std::string_view name) {
  return hidesRowNumbers(withoutBrackets(name)) ? "[" + std::string(name) + "]" : std::string(name);
}

std::string columnNameOf(std::string_view engineName) {
  const bool moved = isBracketed(engineName) && hidesRowNumbers(withoutBrackets(engineName));
  return std::string(moved ? engineName.substr(1, engineName.size() - 2) : engineName);
}

bool hidesRowNumbers(std::string_view engineName) {
  return equalsIgnoringCase(engineName, "rowid");
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
