#include <array>
#include <limits>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/engine/engine_expressions.h"

namespace velmora::tsql {
namespace {

/// The type and length of the first argument decide.
Bound isNull(const Call& call) {
  const Bound value = call.argument(0);
  Bound other = call.argument(1);
  if (value.type.kind == SqlKind::untypedNull) return other;
  Bound converted = castTo(call.binder().context(), other, value.type, call.expression(1).position);
  if (value.isNull()) return converted;
  Bound result = computed("coalesce(" + exactSql(value) + ", " + exactSql(converted) + ")",
                          value.type, value.canFail || converted.canFail);
  result.nullable = value.nullable && converted.nullable;
  return result;
}

Bound coalesce(const Call& call) {
  std::vector<Bound> values;
  for (std::size_t i = 0; i < call.count(); ++i) values.push_back(call.argument(i));
  return bindCoalesce(call.binder().context(), std::move(values), call.position());
}

Bound nullIf(const Call& call) {
  const Bound value = call.argument(0);
  const Bound other = call.argument(1);
  if (value.type.kind == SqlKind::untypedNull) {
    raiseAt(call.position(), 4151, "The first argument to NULLIF cannot be the NULL constant.");
  }
  const bool twice = costsNothingTwice(value);
  const Bound a = twice ? value : namedOnce(value, 0);
  const Bound b = twice ? other : namedOnce(other, 1);
  const BoundCondition same =
      compare(call.binder().context(), ComparisonOperator::Equal, a, b, call.position());
  const std::string sql = "CASE WHEN " + same.sql + " THEN NULL ELSE " + exactSql(a) + " END";
  return computed(twice ? sql : engine::once(std::array{value.sql, other.sql}, sql), value.type,
                  value.canFail || same.canFail);
}

/// The last part of a written table name such as [dbo].[t] or tempdb..#t.
std::string tableName(std::string_view written) {
  std::string name;
  bool bracketed = false;
  for (const char c : written) {
    if (c == '[' && !bracketed) {
      bracketed = true;
    } else if (c == ']' && bracketed) {
      bracketed = false;
    } else if (c == '.' && !bracketed) {
      name.clear();
    } else {
      name += c;
    }
  }
  return name;
}

/// The value at the place that the first argument says, counted from 1.
Bound choose(const Call& call) {
  const Bound place = call.integer(0);
  std::vector<Bound> values;
  SqlType type;
  for (std::size_t i = 1; i < call.count(); ++i) {
    values.push_back(call.argument(i));
    type = i == 1 ? values.back().type : commonType(type, values.back().type);
  }
  if (type.kind == SqlKind::untypedNull) type = SqlType::integer();
  Bound result = computed("(CASE " + place.sql, type, place.canFail);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Bound value =
        convertTo(call.binder().context(), values[i], type, call.expression(i + 1).position);
    result.sql += " WHEN " + std::to_string(i + 1) + " THEN " + exactSql(value);
    result.canFail = result.canFail || value.canFail;
  }
  result.sql += " END)";
  return result;
}

/// The number the table gave last; its first before it gave any.
Bound identCurrent(const Call& call) {
  Catalog& catalog = call.binder().context().scope.catalog;
  const TableInfo* table = catalog.findTable(tableName(call.constantText(0)));
  if (table == nullptr) return identityConstant(std::nullopt);
  for (const ColumnInfo& column : table->columns) {
    if (!column.identity) continue;
    const std::int64_t next = catalog.nextIdentity(*table);
    const bool none = next == column.identity->seed;
    return identityConstant(none ? next : next - column.identity->increment);
  }
  return identityConstant(std::nullopt);
}

Bound scopeIdentity(const Call& call) {
  return identityConstant(call.binder().context().scope.scopeIdentity);
}

Bound objectId(const Call& call) {
  const std::string name = tableName(call.constantText(0));
  if (call.count() == 2 && !sameName(call.constantText(1), "U") &&
      !sameName(call.constantText(1), "V")) {
    return constantOf(collections::Null{}, SqlType::integer());
  }
  const TableInfo* table = call.binder().context().scope.catalog.findTable(name);
  if (table == nullptr) return constantOf(collections::Null{}, SqlType::integer());
  return constantOf(table->objectId, SqlType::integer());
}

constexpr auto kMany = std::numeric_limits<std::size_t>::max();
constexpr auto kRules = std::to_array<FunctionRule>({
    {"isnull", 2, 2, isNull},
    {"coalesce", 1, kMany, coalesce},
    {"nullif", 2, 2, nullIf},
    {"choose", 2, kMany, choose},
    {"ident_current", 1, 1, identCurrent},
    {"scope_identity", 0, 0, scopeIdentity},
    {"object_id", 1, 2, objectId},
});

}  // namespace

std::span<const FunctionRule> systemFunctions() {
  return kRules;
}

}  // namespace velmora::tsql
