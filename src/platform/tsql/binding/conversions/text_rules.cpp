#include "platform/tsql/binding/conversions/text_rules.h"

#include <algorithm>

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
  // A character of a national text may take two bytes of the code page.
  const bool widens = value.type.isNational() && !to.isNational();
  return value.type.length * (widens ? 2 : 1) <= to.length;
}

std::string padded(std::string sql, const SqlType& type) {
  if (!fixedLength(type)) return sql;
  const std::string length = std::to_string(type.length);
  if (type.isNational()) return "rpad(" + sql + ", " + length + ", ' ')";
  return "velmora_narrow_padded(" + sql + ", " + length + ")";
}

/// Whether the engine's own LIKE matches the text as it is, or without the blanks at its end.
enum class LikeForm { function, asItIs, trimmed };

LikeForm formOf(const Bound& pattern, bool hasEscape, bool loose) {
  if (!pattern.constant || hasEscape) return LikeForm::function;
  const std::string_view text = pattern.constant->text();
  if (text.find('[') != std::string_view::npos) return LikeForm::function;
  if (!loose || text.ends_with('%')) return LikeForm::asItIs;
  return text.ends_with(' ') || text.ends_with('_') ? LikeForm::function : LikeForm::trimmed;
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

/// Most texts are short enough in any count of their characters, which the engine sees fast.
std::string fittedSql(const std::string& text, const SqlType& type, std::string_view column) {
  const std::string room = std::to_string(type.length);
  const std::string checked = "velmora_fitted(" + text + ", " + room + ", " +
                              (type.isNational() ? "TRUE" : "FALSE") + ", " + quoteText(column) +
                              ")";
  if (!isName(text)) return checked;
  return "CASE WHEN strlen(" + text + ") <= " + room + " THEN " + text + " ELSE " + checked +
         " END";
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

BoundCondition likeCondition(const Bound& value, const Bound& pattern, std::string_view escape,
                             bool loose) {
  if (pattern.isNull()) return {"CAST(NULL AS BOOLEAN)", false};
  const bool canFail = value.canFail || pattern.canFail;
  const std::string wanted =
      pattern.constant ? "lower(" + quoteText(pattern.constant->text()) + ")" : lowerSql(pattern);
  switch (formOf(pattern, !escape.empty(), loose)) {
    case LikeForm::asItIs:
      return {lowerSql(value) + " LIKE " + wanted, canFail};
    case LikeForm::trimmed:
      return {"rtrim(" + lowerSql(value) + ", ' ') LIKE " + wanted, canFail};
    default:
      return {"velmora_like(" + lowerSql(value) + ", " + wanted + ", lower(" + quoteText(escape) +
                  "), " + (loose ? "TRUE" : "FALSE") + ")",
              canFail};
  }
}

std::string startSql(std::string_view text, const SqlType& type) {
  std::string sql = type.isNational() ? "left(" : "velmora_narrow_start(";
  return sql.append(text).append(", ").append(std::to_string(type.length)).append(")");
}

Bound cutTo(const Bound& value, const SqlType& type) {
  Bound result = value;
  result.type = type;
  result.constant.reset();
  if (!surelyFits(value, type)) {
    result.sql = startSql(value.sql, type);
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
  result.sql = padded(fittedSql(value.sql, type, column), type);
  result.canFail = true;
  return result;
}

}  // namespace velmora::tsql
