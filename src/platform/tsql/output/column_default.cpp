#include "platform/tsql/output/column_default.h"

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/syntax/parser.h"

namespace velmora::tsql {
namespace {

BoundQuery refuseQuery(Context& /*context*/, const QueryScope* /*outer*/, const Query& query) {
  raiseAt(query.body.position, 1046,
          "Subqueries are not allowed in a default. Only scalar expressions are allowed.");
}

constexpr QueryStages kNoQueries{refuseQuery, nullptr};

Bound bindDefault(Context& context, const TableInfo& table, const ColumnInfo& column,
                  const Expression& value) {
  const Scope seen = definitionScope(context.scope);
  Context own(seen, kNoQueries);
  QueryScope scope;
  scope.aggregatesAllowed = false;
  Bound bound = assignTo(own, ExpressionBinder(own, scope).bind(value), column.type,
                         table.name + "." + column.name, value.position);
  for (const DecimalFunction& function : own.functions) context.require(function);
  return bound;
}

}  // namespace

void checkDefault(Context& context, const TableInfo& table, const ColumnInfo& column,
                  const Expression& value) {
  bindDefault(context, table, column, value);
}

std::string defaultSql(Context& context, const TableInfo& table, const ColumnInfo& column) {
  if (!column.defaultText.empty()) {
    return exactSql(bindDefault(context, table, column, *parseValue(column.defaultText)));
  }
  return column.engineDefault.empty() ? castSql("NULL", column.type) : column.engineDefault;
}

std::optional<std::string> constantDefaultSql(Context& context, const TableInfo& table,
                                              const ColumnInfo& column) {
  if (column.defaultText.empty()) return castSql("NULL", column.type);
  const Bound bound = bindDefault(context, table, column, *parseValue(column.defaultText));
  if (!bound.constant) return std::nullopt;
  std::string literal = literalSql(*bound.constant, column.type);
  return literal == exactSql(bound) ? std::optional(std::move(literal)) : std::nullopt;
}

}  // namespace velmora::tsql
