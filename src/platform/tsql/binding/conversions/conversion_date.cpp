#include "platform/tsql/binding/conversions/conversion_date.h"

#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/values/date_kinds.h"
#include "platform/tsql/values/date_text.h"
#include "platform/tsql/values/text_date.h"
#include "platform/tsql/values/value_error.h"

namespace velmora::tsql {
namespace {

std::string kindText(const SqlType& type) {
  return std::to_string(dateKind(type));
}

std::string timestamp(const Bound& value) {
  return value.type.kind == SqlKind::date ? castSql(value.sql, "TIMESTAMP") : value.sql;
}

/// What `answer` says of a constant, or its error where a row reaches it.
template <class Answer>
Bound constantDate(const SqlType& type, Answer answer) {
  try {
    return constantOf(answer(), type);
  } catch (const values::ValueError& error) {
    return computed(raiseSql(error.what(), type), type, true);
  }
}

void requireDays(const SqlType& date, const SqlType& number, Position position) {
  if (date.kind == SqlKind::dateTime || date.kind == SqlKind::smallDateTime) return;
  raiseAt(position, 206,
          "Operand type clash: " + declaration(number) + " is incompatible with " +
              declaration(date) + ".");
}

}  // namespace

int dateKind(const SqlType& type) {
  return static_cast<int>(type.kind) - static_cast<int>(SqlKind::date);
}

Bound textToDate(const Bound& value, const SqlType& type, int style) {
  if (value.constant) {
    return constantDate(
        type, [&] { return values::dateOfText(value.constant->text(), style, dateKind(type)); });
  }
  const std::string sql = "velmora_date_of_text(" + value.sql + ", " + std::to_string(style) +
                          ", " + kindText(type) + ")";
  return computed(type.kind == SqlKind::date ? castSql(sql, type) : sql, type, true);
}

Bound dateToDate(const Bound& value, const SqlType& type) {
  if (value.constant) {
    return constantDate(type,
                        [&] { return values::heldAs(value.constant->toDate(), dateKind(type)); });
  }
  if (type.kind == SqlKind::date) return computed(castSql(value.sql, type), type, value.canFail);
  const bool widens = value.type.kind != SqlKind::date && type.kind > value.type.kind;
  if (widens) return computed(value.sql, type, value.canFail);
  return computed("velmora_held_as(" + timestamp(value) + ", " + kindText(type) + ")", type, true);
}

Bound numberToDate(const Bound& value, const SqlType& type, Position position) {
  requireDays(type, value.type, position);
  return computed(
      "velmora_date_of_days(" + castSql(value.sql, "DOUBLE") + ", " + kindText(type) + ")", type,
      true);
}

Bound dateToNumber(const Bound& value, const SqlType& type, Position position) {
  requireDays(value.type, type, position);
  const std::string days = "velmora_days_of(" + value.sql + ")";
  return computed(castSql(type.isInteger() ? "round(" + days + ")" : days, type), type, true);
}

Bound dateText(const Bound& value, std::optional<int> style) {
  const bool day = value.type.kind == SqlKind::date;
  const SqlType type = SqlType::varchar(27);
  if (!style && value.type.kind == SqlKind::dateTime2) {
    return computed("velmora_long_date_text(" + value.sql + ")", type, value.canFail);
  }
  const int number = style.value_or(day ? 121 : 0);
  if (value.constant) {
    try {
      const std::string text = values::dateText(value.constant->toDate(), number, day);
      return constantOf(text, SqlType::varchar(static_cast<std::int64_t>(text.size())));
    } catch (const values::ValueError& error) {
      return computed(raiseSql(error.what(), type), type, true);
    }
  }
  return computed("velmora_date_text(" + timestamp(value) + ", " + std::to_string(number) + ", " +
                      (day ? "TRUE" : "FALSE") + ")",
                  type, true);
}

}  // namespace velmora::tsql
