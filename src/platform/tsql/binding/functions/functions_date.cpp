#include <algorithm>
#include <array>

#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

/// A part of a date: T-SQL's names for it, DuckDB's, and what moves a date by it.
struct DatePart {
  std::array<std::string_view, 3> names;
  std::string_view engine;
  std::string_view interval;
};

constexpr auto kParts = std::to_array<DatePart>({
    {{"year", "yy", "yyyy"}, "year", "to_years"},
    {{"quarter", "qq", "q"}, "quarter", "to_quarters"},
    {{"month", "mm", "m"}, "month", "to_months"},
    {{"day", "dd", "d"}, "day", "to_days"},
    {{"week", "wk", "ww"}, "week", "to_weeks"},
    {{"hour", "hh", "hour"}, "hour", "to_hours"},
    {{"minute", "mi", "n"}, "minute", "to_minutes"},
    {{"second", "ss", "s"}, "second", "to_seconds"},
    {{"millisecond", "ms", "ms"}, "millisecond", "to_milliseconds"},
    {{"dayofyear", "dy", "y"}, "dayofyear", "to_days"},
    {{"weekday", "dw", "w"}, "dow", "to_days"},
});

const DatePart& partOf(const Call& call) {
  const Expression& expression = call.expression(0);
  const auto* name = std::get_if<ColumnReference>(&expression.node);
  if (name != nullptr && name->column.qualifiers.empty()) {
    const std::string wanted = lowered(name->column.name);
    for (const DatePart& part : kParts) {
      if (std::ranges::find(part.names, wanted) != part.names.end()) return part;
    }
  }
  raiseAt(expression.position, 155,
          (name != nullptr ? "'" + name->column.name + "' is" : std::string("This is")) +
              " not a recognized part of a date.");
}

Bound partSql(const Bound& date, std::string_view part) {
  std::string sql(part);
  return computed(castSql(sql.append("(").append(date.sql).append(")"), SqlType::integer()),
                  SqlType::integer(), date.canFail);
}

Bound year(const Call& call) {
  return partSql(call.dateTime(0), "year");
}
Bound month(const Call& call) {
  return partSql(call.dateTime(0), "month");
}
Bound day(const Call& call) {
  return partSql(call.dateTime(0), "day");
}

Bound datePart(const Call& call) {
  const DatePart& part = partOf(call);
  const Bound date = call.dateTime(1);
  if (part.engine == "week") refuse(call.position(), "datepart(week, ...)");
  // Sunday is day 1 of the week, a second's thousandths do not hold the seconds.
  if (part.engine == "dow") {
    return computed("CAST(dayofweek(" + date.sql + ") + 1 AS INTEGER)", SqlType::integer(),
                    date.canFail);
  }
  if (part.engine == "millisecond") {
    return computed("CAST(millisecond(" + date.sql + ") % 1000 AS INTEGER)", SqlType::integer(),
                    date.canFail);
  }
  return partSql(date, part.engine);
}

Bound dateAdd(const Call& call) {
  const DatePart& part = partOf(call);
  const Bound count = call.integer(1);
  const Bound date = call.dateTime(2);
  std::string sql = date.sql + " + ";
  sql.append(part.interval).append("(").append(count.sql).append(")");
  return computed(castSql(sql, date.type), date.type, count.canFail || date.canFail);
}

/// How many borders of the part lie between the two.
Bound dateDiff(const Call& call) {
  const DatePart& part = partOf(call);
  const Bound from = call.dateTime(1);
  const Bound to = call.dateTime(2);
  const bool canFail = from.canFail || to.canFail;
  if (part.engine == "week") {
    return computed(castSql(engine::weeksBetween(from.sql, to.sql), SqlType::integer()),
                    SqlType::integer(), canFail);
  }
  const std::string_view unit =
      part.engine == "dow" || part.engine == "dayofyear" ? "day" : part.engine;
  return computed(
      castSql("date_diff('" + std::string(unit) + "', " + castSql(from.sql, SqlType::dateTime()) +
                  ", " + castSql(to.sql, SqlType::dateTime()) + ")",
              SqlType::integer()),
      SqlType::integer(), canFail);
}

/// One value for the whole statement.
Bound getDate(const Call& call) {
  const Context& context = call.binder().context();
  if (context.inDefault) return computed(engine::now(), SqlType::dateTime());
  return constantOf(context.scope.now, SqlType::dateTime());
}

Bound isDate(const Call& call) {
  const Bound value = call.text(0);
  return computed("CAST(" + engine::tryTextToDateTime(value.sql) + " IS NOT NULL AS INTEGER)",
                  SqlType::integer(), value.canFail);
}

constexpr auto kRules = std::to_array<FunctionRule>({
    {"year", 1, 1, year},
    {"month", 1, 1, month},
    {"day", 1, 1, day},
    {"datepart", 2, 2, datePart},
    {"dateadd", 3, 3, dateAdd},
    {"datediff", 3, 3, dateDiff},
    {"getdate", 0, 0, getDate},
    {"current_timestamp", 0, 0, getDate},
    {"isdate", 1, 1, isDate},
});

}  // namespace

std::span<const FunctionRule> dateFunctions() {
  return kRules;
}

}  // namespace velmora::tsql
