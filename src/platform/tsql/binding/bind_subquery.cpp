#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/text_rules.h"
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

/// Whether its rows are more than the rows of its FROM and WHERE.
bool mustRun(const BoundSelect& select) {
  return select.grouped || select.top == 0;
}

/// A query that has a row exactly when this one has.
std::string existenceText(Context& context, const BoundQuery& query) {
  const auto* select = std::get_if<BoundSelect>(&query.body.node);
  if (select == nullptr || mustRun(*select)) {
    return context.queries.text(context, query, typesOf(query));
  }
  return query.with + "SELECT 1" + select->body;
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
  const Bound operand = bind(*node.operand);
  const BoundQuery query = context_.queries.bind(context_, &scope_, *node.query);
  const SqlType common = commonType(operand.type, onlyColumn(query, expression.position).type);
  const Bound value = comparand(context_, operand, common, expression.position);
  const std::string rows =
      common.isText() ? keyRows(context_, query) : context_.queries.text(context_, query, {common});
  return {"(" + value.sql + (node.negated ? " NOT IN (" : " IN (") + rows + "))", value.canFail};
}

BoundCondition ExpressionBinder::bindExists(const ExistsCondition& node) {
  const BoundQuery query = context_.queries.bind(context_, &scope_, *node.query);
  return {"EXISTS (" + existenceText(context_, query) + ")", false};
}

}  // namespace velmora::tsql
