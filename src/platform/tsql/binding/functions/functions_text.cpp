#include <algorithm>
#include <array>
#include <limits>

#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"
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
  return sameLength(call, "reverse");
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

/// From the 1-based start; places before the first character count against the length.
Bound substring(const Call& call) {
  const Bound text = call.text(0);
  const Bound start = call.integer(1);
  const Bound length = call.integer(2);
  const bool plain = isAtLeast(start, 1) && isAtLeast(length, 0);
  const std::string sql = plain
                              ? "substring(" + text.sql + ", " + start.sql + ", " + length.sql + ")"
                              : engine::substring(text.sql, start.sql, length.sql);
  return computed(sql, resultText(text.type, lengthBound(length, text.type)),
                  text.canFail || start.canFail || length.canFail || !isAtLeast(length, 0));
}

Bound endOf(const Call& call, const std::string& name) {
  const Bound text = call.text(0);
  const Bound length = call.integer(1);
  const bool plain = isAtLeast(length, 0);
  const std::string count = plain ? length.sql : engine::checkedLength(length.sql);
  return computed(name + "(" + text.sql + ", " + count + ")",
                  resultText(text.type, lengthBound(length, text.type)), text.canFail || !plain);
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

/// Finds what to replace without regard to letter case.
Bound replace(const Call& call) {
  const Bound text = call.text(0);
  const Bound from = call.text(1);
  const Bound to = call.text(2);
  const SqlType type = resultText(text.type, SqlType::kMaxLength);
  const bool canFail = text.canFail || from.canFail || to.canFail;
  if (!hasLetters(from)) {
    return computed("replace(" + text.sql + ", " + from.sql + ", " + to.sql + ")", type, canFail);
  }
  return computed(engine::replaced(text.sql, from.sql, to.sql), type, canFail);
}

Bound charindex(const Call& call) {
  const Bound wanted = call.text(0);
  const Bound text = call.text(1);
  const std::string inText = "lower(" + text.sql + ")";
  const std::string small = "lower(" + wanted.sql + ")";
  if (call.count() == 2) {
    return computed(castSql("strpos(" + inText + ", " + small + ")", SqlType::integer()),
                    SqlType::integer(), wanted.canFail || text.canFail);
  }
  const Bound start = call.integer(2);
  return computed(castSql(engine::positionFrom(inText, small, start.sql), SqlType::integer()),
                  SqlType::integer(), wanted.canFail || text.canFail || start.canFail);
}

Bound space(const Call& call) {
  const Bound count = call.integer(0);
  return computed("repeat(' ', " + count.sql + ")", SqlType::varchar(8000), count.canFail);
}

Bound replicate(const Call& call) {
  const Bound text = call.text(0);
  const Bound count = call.integer(1);
  return computed(
      "CASE WHEN " + count.sql + " >= 0 THEN repeat(" + text.sql + ", " + count.sql + ") END",
      resultText(text.type, SqlType::kMaxLength), text.canFail || count.canFail);
}

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
});

}  // namespace

std::span<const FunctionRule> textFunctions() {
  return kRules;
}

}  // namespace velmora::tsql
