#include "platform/tsql/binding/accumulation.h"
#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

/// The single column of texts by their comparison keys.
std::string keyRows(Context& context, const BoundQuery& query) {
  const Bound key = computed("q." + placeName(0), onlyColumn(query, {}).type);
  return "SELECT " + keySql(key) + " FROM (" +
         context.queries.text(context, query, typesOf(query)) + ") AS q(" + placeName(0) + ")";
}

/// A step of an assigning select runs behind the rows, where no query can.
void requireNoStep(const QueryScope& scope, Position position) {
  if (scope.accumulation != nullptr && scope.accumulation->stepwise) {
    refuse(position, "a condition with a query beside a variable that the same select assigns");
  }
}

/// Whether its rows are more than the rows of its FROM and WHERE.
bool mustRun(const BoundSelect& select) {
  return select.grouped || select.top == 0 || select.topPercent;
}

/// A query that has a row exactly when this one has.
std::string existenceText(Context& context, const BoundQuery& query) {
  const auto* select = std::get_if<BoundSelect>(&query.body.node);
  if (select == nullptr || mustRun(*select)) {
    return context.queries.text(context, query, typesOf(query));
  }
  return query.with + "SELECT 1" + select->body;
}

/// A value and the rows of a subquery, as they are compared with one another.
struct BesideRows {
  Bound value;
  std::string rows;
};

BesideRows besideRows(ExpressionBinder& binder, const Expression& operand, const Query& rows,
                      Position position) {
  Context& context = binder.context();
  requireNoStep(binder.scope(), position);
  const Bound value = binder.bind(operand);
  const BoundQuery query = context.queries.bind(context, &binder.scope(), rows);
  const SqlType common = commonType(value.type, onlyColumn(query, position).type);
  return {
      comparand(context, value, common, position),
      common.isText() ? keyRows(context, query) : context.queries.text(context, query, {common})};
}

}  // namespace

Bound ExpressionBinder::bindScalarSubquery(const ScalarSubquery& subquery) {
  const BoundQuery query = context_.queries.bind(context_, &scope_, *subquery.query);
  const OutputColumn& column = onlyColumn(query, subquery.query->body.position);
  const SqlType type = column.type.kind == SqlKind::untypedNull ? SqlType::integer() : column.type;
  return computed("(" + context_.queries.text(context_, query, {type}) + ")", type);
}

BoundCondition ExpressionBinder::bindInSubquery(const Expression& expression,
                                                const InSubqueryCondition& node) {
  const auto [value, rows] = besideRows(*this, *node.operand, *node.query, expression.position);
  return {"(" + value.sql + (node.negated ? " NOT IN (" : " IN (") + rows + "))", value.canFail};
}

BoundCondition ExpressionBinder::bindQuantified(const Expression& expression,
                                                const QuantifiedComparison& node) {
  const auto [value, rows] = besideRows(*this, *node.operand, *node.query, expression.position);
  std::string sql = "(" + value.sql;
  sql.append(symbol(node.op)).append(node.all ? "ALL (" : "ANY (").append(rows).append("))");
  return {std::move(sql), value.canFail};
}

BoundCondition ExpressionBinder::bindExists(const Expression& expression,
                                            const ExistsCondition& node) {
  requireNoStep(scope_, expression.position);
  const BoundQuery query = context_.queries.bind(context_, &scope_, *node.query);
  return {"EXISTS (" + existenceText(context_, query) + ")", false};
}

}  // namespace velmora::tsql
