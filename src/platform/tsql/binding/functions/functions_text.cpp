#include <algorithm>
#include <array>
#include <limits>

#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

SqlType resultText(const SqlType& type, std::int64_t length) {
  return type.isNational() ? SqlType::nvarchar(length) : SqlType::varchar(length);
}
SqlType resultText(const SqlType& type) {
  return resultText(type, type.length);
}

/// `name(text, more)` of the same length at most.
Bound sameLength(const Call& call, std::string_view name, std::string_view more = {}) {
  const Bound text = call.text(0);
  std::string sql(name);
  return computed(sql.append("(").append(text.sql).append(more).append(")"), resultText(text.type),
                  text.canFail);
}

// What goes at an end are blanks; other white space stays.
constexpr std::string_view kBlanks = ", ' '";

Bound upper(const Call& call) {
  return sameLength(call, "upper");
}
Bound lower(const Call& call) {
  return sameLength(call, "lower");
}
Bound ltrim(const Call& call) {
  return sameLength(call, "ltrim", kBlanks);
}
Bound rtrim(const Call& call) {
  return sameLength(call, "rtrim", kBlanks);
}
Bound reverse(const Call& call) {
  return sameLength(call, "velmora_reversed");
}

/// Characters without trailing blanks.
Bound len(const Call& call) {
  const Bound text = call.text(0);
  return computed("CAST(length(rtrim(" + text.sql + ", ' ')) AS INTEGER)", SqlType::integer(),
                  text.canFail);
}

/// The constant value of a length, or the text's own.
std::int64_t lengthBound(const Bound& length, const SqlType& type) {
  if (!length.constant || length.isNull()) return type.length;
  const std::int64_t wanted = std::max<std::int64_t>(length.constant->toInt64(), 1);
  return type.length == SqlType::kMaxLength ? wanted : std::min(wanted, type.length);
}

bool isAtLeast(const Bound& value, std::int64_t least) {
  return value.constant && !value.isNull() && value.constant->toInt64() >= least;
}

/// The largest text of a kind that is not max.
SqlType widest(const SqlType& type) {
  return resultText(type, type.isNational() ? 4000 : 8000);
}

/// From the 1-based start; places before the first character count against the length.
Bound substring(const Call& call) {
  const Bound text = call.text(0);
  const Bound start = call.integer(1);
  const Bound length = call.integer(2);
  const bool plain = isAtLeast(start, 1) && isAtLeast(length, 0);
  const std::string sql = (plain ? "substring(" : "velmora_substring(") + text.sql + ", " +
                          start.sql + ", " + length.sql + ")";
  return computed(sql, resultText(text.type, lengthBound(length, text.type)),
                  text.canFail || start.canFail || length.canFail || !isAtLeast(length, 0));
}

Bound endOf(const Call& call, const std::string& name) {
  const Bound text = call.text(0);
  const Bound length = call.integer(1);
  const bool plain = isAtLeast(length, 0);
  return computed((plain ? "" : "velmora_") + name + "(" + text.sql + ", " + length.sql + ")",
                  resultText(text.type, lengthBound(length, text.type)),
                  text.canFail || length.canFail || !plain);
}

Bound left(const Call& call) {
  return endOf(call, "left");
}
Bound right(const Call& call) {
  return endOf(call, "right");
}

bool hasLetters(const Bound& text) {
  if (!text.constant) return true;
  return !text.isNull() && std::ranges::any_of(text.constant->text(), [](char c) {
    return (c & 0x80) != 0 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  });
}

/// A text that may be too long for the widest of its kind, which is cut there as the server
/// does; max texts are not.
Bound cutToWidest(std::string sql, const SqlType& type, bool canFail) {
  if (type.length == SqlType::kMaxLength) return computed(std::move(sql), type, canFail);
  const SqlType wide = widest(type);
  return computed(startSql(sql, wide), wide, canFail);
}

/// Finds what to replace without regard to letter case.
Bound replace(const Call& call) {
  const Bound text = call.text(0);
  const Bound from = call.text(1);
  const Bound to = call.text(2);
  const bool canFail = text.canFail || from.canFail || to.canFail;
  const std::string name = hasLetters(from) ? "velmora_replaced(" : "replace(";
  return cutToWidest(name + text.sql + ", " + from.sql + ", " + to.sql + ")", text.type, canFail);
}

Bound charindex(const Call& call) {
  const Bound wanted = call.text(0);
  const Bound text = call.text(1);
  const std::string inText = "lower(" + text.sql + ")";
  const std::string small = "lower(" + wanted.sql + ")";
  const bool canFail = wanted.canFail || text.canFail;
  const bool known = wanted.constant && !wanted.isNull() && !wanted.constant->text().empty();
  if (call.count() == 2 && known) {
    return computed(castSql("strpos(" + inText + ", " + small + ")", SqlType::integer()),
                    SqlType::integer(), canFail);
  }
  const std::string start = call.count() == 2 ? "1" : call.integer(2).sql;
  return computed("velmora_place(" + small + ", " + inText + ", " + start + ")", SqlType::integer(),
                  canFail || call.count() == 3);
}

/// The place of a pattern in a text.
Bound patindex(const Call& call) {
  const Bound pattern = call.text(0);
  const Bound text = call.text(1);
  const bool loose = !pattern.type.isNational() && !text.type.isNational();
  return computed("velmora_pattern_place(lower(" + text.sql + "), lower(" + pattern.sql + "), " +
                      (loose ? "TRUE" : "FALSE") + ")",
                  SqlType::integer(), pattern.canFail || text.canFail);
}

Bound repeated(const Bound& text, const Bound& count) {
  const bool max = text.type.length == SqlType::kMaxLength;
  const SqlType type = max ? resultText(text.type) : widest(text.type);
  const std::string room = max ? "0" : std::to_string(type.length);
  return computed("velmora_repeated(" + text.sql + ", " + count.sql + ", " + room + ", " +
                      (type.isNational() ? "TRUE" : "FALSE") + ")",
                  type, true);
}

Bound space(const Call& call) {
  return repeated(constantOf(collections::Variant(std::string(" ")), SqlType::varchar(1)),
                  call.integer(0));
}

Bound replicate(const Call& call) {
  return repeated(call.text(0), call.integer(1));
}

Bound stuff(const Call& call) {
  const Bound text = call.text(0);
  const Bound other = call.text(3);
  const SqlType type =
      other.type.isNational() ? resultText(other.type, text.type.length) : text.type;
  const std::string sql = "velmora_stuffed(" + text.sql + ", " + call.integer(1).sql + ", " +
                          call.integer(2).sql + ", " + other.sql + ")";
  return cutToWidest(sql, resultText(type), true);
}

Bound codeOf(const Call& call, const std::string& name) {
  return computed(name + "(" + call.text(0).sql + ")", SqlType::integer(), true);
}
Bound ascii(const Call& call) {
  return codeOf(call, "velmora_ascii");
}
Bound unicode(const Call& call) {
  return codeOf(call, "velmora_unicode");
}

Bound character(const Call& call) {
  return computed("velmora_char(" + call.integer(0).sql + ")", {SqlKind::character, 0, 0, 1}, true);
}
Bound nationalCharacter(const Call& call) {
  return computed("velmora_nchar(" + call.integer(0).sql + ")", {SqlKind::nchar, 0, 0, 1}, true);
}

/// str(number, length, decimals): right-justified.
Bound str(const Call& call) {
  const Bound number = call.floating(0);
  const std::string length = call.count() > 1 ? call.integer(1).sql : "10";
  const std::string decimals = call.count() > 2 ? call.integer(2).sql : "0";
  return computed("velmora_str(" + number.sql + ", " + length + ", " + decimals + ")",
                  SqlType::varchar(8000), true);
}

Bound asText(const Call& call, const Bound& value) {
  if (value.type.isText()) return value;
  return castTo(call.binder().context(), value, SqlType::varchar(SqlType::kMaxLength),
                call.position());
}

/// Texts put together, NULL as nothing; with a separator NULL is left out.
Bound joined(const Call& call, std::string_view name, std::size_t first) {
  std::string sql(name);
  SqlType type = SqlType::varchar(0);
  bool canFail = false;
  for (std::size_t i = 0; i < call.count(); ++i) {
    const Bound value = call.argument(i);
    const Bound text = asText(call, value);
    sql.append(i == 0 ? "(" : ", ").append(text.sql);
    const bool max = text.type.length == SqlType::kMaxLength && value.type.isText();
    const std::int64_t length = text.type.length == SqlType::kMaxLength ? 40 : text.type.length;
    const std::int64_t uses = i < first ? static_cast<std::int64_t>(call.count()) : 1;
    if (text.type.isNational()) type.kind = SqlKind::nvarchar;
    type.length = max || type.length == SqlType::kMaxLength ? SqlType::kMaxLength
                                                            : type.length + length * uses;
    canFail = canFail || text.canFail;
  }
  const std::int64_t room = type.isNational() ? 4000 : 8000;
  if (type.length > room) return cutToWidest(sql + ")", type, canFail);
  return computed(sql + ")", type, canFail);
}

Bound concat(const Call& call) {
  return joined(call, "concat", 0);
}
Bound concatWithSeparator(const Call& call) {
  return joined(call, "concat_ws", 1);
}

/// Whether a value reads as a number; numbers do, dates do not.
Bound isNumeric(const Call& call) {
  const Bound value = call.argument(0);
  if (value.isNull()) return constantOf(0, SqlType::integer());
  if (value.type.isNumber()) {
    return computed(castSql("(" + value.sql + " IS NOT NULL)", SqlType::integer()),
                    SqlType::integer());
  }
  if (value.type.isDate()) return constantOf(0, SqlType::integer());
  return computed("coalesce(velmora_is_numeric(" + value.sql + "), 0)", SqlType::integer(),
                  value.canFail);
}

/// The bytes that the server keeps a number or a date in.
int bytesOf(const SqlType& type) {
  switch (type.kind) {
    case SqlKind::bit:
    case SqlKind::tinyInt:
      return 1;
    case SqlKind::smallInt:
      return 2;
    case SqlKind::integer:
    case SqlKind::smallMoney:
    case SqlKind::real:
      return 4;
    case SqlKind::date:
      return 3;
    case SqlKind::uniqueIdentifier:
      return 16;
    case SqlKind::decimal:
      return type.precision < 10 ? 5 : type.precision < 20 ? 9 : type.precision < 29 ? 13 : 17;
    default:
      return 8;
  }
}

Bound dataLength(const Call& call) {
  const Bound value = call.argument(0);
  const bool wide = value.type.length == SqlType::kMaxLength;
  const SqlType type = wide ? SqlType::of(SqlKind::bigInt) : SqlType::integer();
  if (value.isNull()) return constantOf(collections::Null{}, type);
  if (!value.type.isText() || value.type.kind == SqlKind::uniqueIdentifier) {
    return computed("CASE WHEN " + value.sql + " IS NULL THEN NULL ELSE " +
                        std::to_string(bytesOf(value.type)) + " END",
                    type, value.canFail);
  }
  const std::string name =
      value.type.isNational() ? "velmora_wide_bytes(" : "velmora_narrow_bytes(";
  return computed(castSql(name + value.sql + ")", type), type, value.canFail);
}

Bound newId(const Call&) {
  return computed("upper(CAST(uuid() AS VARCHAR))", SqlType::of(SqlKind::uniqueIdentifier));
}

constexpr auto kMany = std::numeric_limits<std::size_t>::max();
constexpr auto kRules = std::to_array<FunctionRule>({
    {"upper", 1, 1, upper},
    {"lower", 1, 1, lower},
    {"ltrim", 1, 1, ltrim},
    {"rtrim", 1, 1, rtrim},
    {"reverse", 1, 1, reverse},
    {"len", 1, 1, len},
    {"substring", 3, 3, substring},
    {"left", 2, 2, left},
    {"right", 2, 2, right},
    {"replace", 3, 3, replace},
    {"charindex", 2, 3, charindex},
    {"space", 1, 1, space},
    {"replicate", 2, 2, replicate},
    {"patindex", 2, 2, patindex},
    {"stuff", 4, 4, stuff},
    {"ascii", 1, 1, ascii},
    {"unicode", 1, 1, unicode},
    {"char", 1, 1, character},
    {"nchar", 1, 1, nationalCharacter},
    {"str", 1, 3, str},
    {"concat", 2, kMany, concat},
    {"concat_ws", 3, kMany, concatWithSeparator},
    {"isnumeric", 1, 1, isNumeric},
    {"datalength", 1, 1, dataLength},
    {"newid", 0, 0, newId},
});

}  // namespace

std::span<const FunctionRule> textFunctions() {
  return kRules;
}

}  // namespace velmora::tsql
