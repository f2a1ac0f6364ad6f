#include "platform/tsql/binding/conversions/text_rules.h"

#include <algorithm>

#include "platform/tsql/engine/engine_expressions.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

bool fixedLength(const SqlType& type) {
  return type.kind == SqlKind::character || type.kind == SqlKind::nchar;
}

/// Whether every value of `from` has at most the characters `to` takes.
bool surelyFits(const Bound& value, const SqlType& to) {
  if (to.length == SqlType::kMaxLength) return true;
  if (value.type.length == SqlType::kMaxLength || !value.type.isText()) return false;
  return value.type.length <= to.length;
}

std::string padded(std::string sql, const SqlType& type) {
  if (!fixedLength(type)) return sql;
  return "rpad(" + sql + ", " + std::to_string(type.length) + ", ' ')";
}

/// A pattern in the parts DuckDB's LIKE knows; nullopt when it needs a regular expression.
std::optional<std::string> plainPattern(std::string_view pattern, char escape) {
  const bool special = pattern.find('[') != std::string_view::npos ||
                       (escape != 0 && pattern.find(escape) != std::string_view::npos);
  if (special) return std::nullopt;
  return std::string(pattern);
}

void appendQuoted(std::string& regex, char c) {
  if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos) regex += '\\';
  regex += c;
}

/// The character class that begins behind '[' at `at`; moves behind its ']'.
std::string characterClass(std::string_view pattern, std::size_t& at) {
  const std::size_t end = pattern.find(']', at);
  if (end == std::string_view::npos) {
    at = pattern.size();
    return "[^\\x00-\\x{10FFFF}]";  // an open bracket never matches
  }
  std::string_view content = pattern.substr(at, end - at);
  at = end + 1;
  std::string result = "[";
  if (content.starts_with('^')) {
    result += '^';
    content.remove_prefix(1);
  }
  for (const char c : content) {
    if (c == '\\' || c == '[' || c == '^') result += '\\';
    result += c;
  }
  return result += ']';
}

std::string regexPattern(std::string_view pattern, char escape) {
  std::string regex;
  for (std::size_t at = 0; at < pattern.size();) {
    const char c = pattern[at++];
    if (escape != 0 && c == escape && at < pattern.size()) {
      appendQuoted(regex, pattern[at++]);
    } else if (c == '%') {
      regex += ".*";
    } else if (c == '_') {
      regex += '.';
    } else if (c == '[') {
      regex += characterClass(pattern, at);
    } else {
      appendQuoted(regex, c);
    }
  }
  return regex;
}

/// Whether ASCII letters are the only ones with a small form: the rest are the ideographs
/// from U+4000 to U+9FFF, which have three bytes, the first from E4 to E9.
bool foldsWithoutEngine(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) continue;
    if (byte < 0xE4 || byte > 0xE9) return false;
    at += 2;
  }
  return true;
}

/// Whether `sql` is a column's name, which costs nothing to say twice.
bool isName(std::string_view sql) {
  return sql.ends_with('"') && sql.find_first_of(" ()'") == std::string_view::npos;
}

std::string lowerSql(const Bound& text) {
  return "lower(" + text.sql + ")";
}

}  // namespace

std::optional<std::string> foldedText(std::string_view text) {
  while (text.ends_with(' ')) text.remove_suffix(1);
  if (!foldsWithoutEngine(text)) return std::nullopt;
  return lowered(text);
}

std::string keySql(const Bound& value) {
  if (!value.type.isText()) return value.sql;
  if (value.constant && !value.constant->isNull()) {
    if (const auto folded = foldedText(value.constant->text())) return quoteText(*folded);
  }
  const std::string cut = "rtrim(" + value.sql + ", ' ')";
  if (!isName(value.sql)) return "lower(" + cut + ")";
  // Few texts end with a blank, and the engine looks there faster than it cuts.
  return "lower(CASE WHEN suffix(" + value.sql + ", ' ') THEN " + cut + " ELSE " + value.sql +
         " END)";
}

BoundCondition likeCondition(const Bound& value, const Bound& pattern, char escape) {
  if (!pattern.constant) {
    return {lowerSql(value) + " LIKE " + engine::likePattern(pattern.sql), true};
  }
  if (pattern.isNull()) return {"CAST(NULL AS BOOLEAN)", false};
  const std::string_view text = pattern.constant->text();
  if (const auto plain = plainPattern(text, escape)) {
    return {lowerSql(value) + " LIKE lower(" + quoteText(*plain) + ")", value.canFail};
  }
  return {
      "regexp_full_match(" + value.sql + ", " + quoteText(regexPattern(text, escape)) + ", 'is')",
      value.canFail};
}

Bound cutTo(const Bound& value, const SqlType& type) {
  Bound result = value;
  result.type = type;
  result.constant.reset();
  if (!surelyFits(value, type)) {
    result.sql = "left(" + value.sql + ", " + std::to_string(type.length) + ")";
  }
  result.sql = padded(std::move(result.sql), type);
  if (value.constant && !fixedLength(type) && surelyFits(value, type))
    result.constant = value.constant;
  return result;
}

Bound fittedTo(const Bound& value, const SqlType& type, std::string_view column) {
  Bound result = value;
  result.type = type;
  if (surelyFits(value, type)) {
    result.sql = padded(value.sql, type);
    return result;
  }
  result.sql = padded(engine::fitted(value.sql, type.length, column), type);
  result.canFail = true;
  return result;
}

}  // namespace velmora::tsql
