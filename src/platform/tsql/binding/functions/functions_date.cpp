#include <algorithm>
#include <array>

#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/conversion_date.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/syntax/text_scan.h"
#include "platform/tsql/values/date_kinds.h"

namespace velmora::tsql {
namespace {

/// T-SQL's names for a part of a date, the long one first.
using PartNames = std::array<std::string_view, 3>;

constexpr auto kParts = std::to_array<PartNames>({
    {"year", "yy", "yyyy"},
    {"quarter", "qq", "q"},
    {"month", "mm", "m"},
    {"dayofyear", "dy", "y"},
    {"day", "dd", "d"},
    {"week", "wk", "ww"},
    {"weekday", "dw", "w"},
    {"hour", "hh", "hh"},
    {"minute", "mi", "n"},
    {"second", "ss", "s"},
    {"millisecond", "ms", "ms"},
    {"microsecond", "mcs", "mcs"},
});

std::string_view partOf(const Call& call) {
  const Expression& expression = call.expression(0);
  const auto* name = std::get_if<ColumnReference>(&expression.node);
  if (name != nullptr && name->column.qualifiers.empty()) {
    const std::string wanted = lowered(name->column.name);
    for (const PartNames& names : kParts) {
      if (std::ranges::find(names, wanted) != names.end()) return names[0];
    }
  }
  raiseAt(expression.position, 155,
          (name != nullptr ? "'" + name->column.name + "' is" : std::string("This is")) +
              " not a recognized part of a date.");
}

/// A date has no parts of the day.
void checkPart(const Call& call, std::string_view part, const Bound& date) {
  static constexpr auto kOfDay =
      std::to_array<std::string_view>({"hour", "minute", "second", "millisecond", "microsecond"});
  if (date.type.kind != SqlKind::date || std::ranges::find(kOfDay, part) == kOfDay.end()) return;
  raiseAt(call.position(), 9810,
          "The datepart " + std::string(part) + " is not supported by date function " +
              call.syntax().name + " for data type date.");
}

std::string timestamp(const Bound& date) {
  return date.type.kind == SqlKind::date ? castSql(date.sql, "TIMESTAMP") : date.sql;
}

std::string quoted(std::string_view part) {
  return "'" + std::string(part) + "'";
}

Bound partSql(const Bound& date, std::string_view part) {
  const bool native = part == "year" || part == "month" || part == "day";
  const std::string sql = native
                              ? castSql(std::string(part) + "(" + date.sql + ")", "INTEGER")
                              : "velmora_date_part(" + quoted(part) + ", " + timestamp(date) + ")";
  return computed(sql, SqlType::integer(), date.canFail);
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
  const std::string_view part = partOf(call);
  const Bound date = call.dateTime(1);
  checkPart(call, part, date);
  return partSql(date, part);
}

Bound dateName(const Call& call) {
  const std::string_view part = partOf(call);
  const Bound date = call.dateTime(1);
  checkPart(call, part, date);
  return computed("velmora_date_name(" + quoted(part) + ", " + timestamp(date) + ")",
                  SqlType::nvarchar(30), date.canFail);
}

Bound dateAdd(const Call& call) {
  const std::string_view part = partOf(call);
  const Bound count = call.integer(1);
  const Bound date = call.dateTime(2);
  checkPart(call, part, date);
  const std::string sql = "velmora_date_add(" + quoted(part) + ", " + count.sql + ", " +
                          timestamp(date) + ", " + std::to_string(dateKind(date.type)) + ")";
  return computed(date.type.kind == SqlKind::date ? castSql(sql, date.type) : sql, date.type, true);
}

/// How many borders of the part lie between the two.
Bound dateDiff(const Call& call) {
  const std::string_view part = partOf(call);
  const Bound from = call.dateTime(1);
  const Bound to = call.dateTime(2);
  return computed(
      "velmora_date_diff(" + quoted(part) + ", " + timestamp(from) + ", " + timestamp(to) + ")",
      SqlType::integer(), true);
}

Bound endOfMonth(const Call& call) {
  const SqlType type = SqlType::of(SqlKind::date);
  const std::string months = call.count() == 2 ? call.integer(1).sql : "0";
  const std::string sql =
      "velmora_end_of_month(" + timestamp(call.dateTime(0)) + ", " + months + ")";
  return computed(castSql(sql, type), type, true);
}

/// One value for the whole statement.
Bound getDate(const Call& call) {
  const Scope& scope = call.binder().context().scope;
  const SqlType type = SqlType::dateTime();
  return constantOf(values::heldAs(scope.now, dateKind(type)), type);
}

Bound isDate(const Call& call) {
  const Bound value = call.argument(0);
  const SqlType type = SqlType::integer();
  if (value.isNull()) return constantOf(0, type);
  if (value.type.kind == SqlKind::date || value.type.kind == SqlKind::dateTime2) {
    raiseAt(call.position(), 8116,
            "Argument data type " + declaration(value.type) +
                " is invalid for argument 1 of isdate function.");
  }
  if (value.type.isDate()) {
    return computed(castSql("(" + value.sql + " IS NOT NULL)", type), type, value.canFail);
  }
  return computed("coalesce(velmora_is_date(" + call.text(0).sql + "), 0)", type, value.canFail);
}

constexpr auto kRules = std::to_array<FunctionRule>({
    {"year", 1, 1, year},
    {"month", 1, 1, month},
    {"day", 1, 1, day},
    {"datepart", 2, 2, datePart},
    {"datename", 2, 2, dateName},
    {"dateadd", 3, 3, dateAdd},
    {"datediff", 3, 3, dateDiff},
    {"eomonth", 1, 2, endOfMonth},
    {"getdate", 0, 0, getDate},
    {"current_timestamp", 0, 0, getDate},
    {"isdate", 1, 1, isDate},
});

}  // namespace

std::span<const FunctionRule> dateFunctions() {
  return kRules;
}

}  // namespace velmora::tsql
