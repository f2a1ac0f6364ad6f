#include "platform/tsql/binding/bind_expression.h"

#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/syntax/limits.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

const GroupKey* matchingKey(const QueryScope& scope, std::size_t nodeKind,
                            const std::string& plainSql) {
  for (const GroupKey& key : scope.keys) {
    if (key.nodeKind == nodeKind && key.plainSql == plainSql) return &key;
  }
  return nullptr;
}

bool hasKeyOfKind(const QueryScope& scope, std::size_t nodeKind) {
  for (const GroupKey& key : scope.keys) {
    if (key.nodeKind == nodeKind) return true;
  }
  return false;
}

/// Binds as a row of the ungrouped query.
class UngroupedView {
 public:
  explicit UngroupedView(QueryScope& scope) : scope_(scope), before_(scope.insideAggregate) {
    scope_.insideAggregate = true;
  }
  ~UngroupedView() { scope_.insideAggregate = before_; }
  UngroupedView(const UngroupedView&) = delete;
  UngroupedView& operator=(const UngroupedView&) = delete;

 private:
  QueryScope& scope_;
  bool before_;
};

Bound bindCast(ExpressionBinder& binder, const Expression& expression, const Expression& operand,
               const SqlType& type, std::optional<int> style) {
  if (const auto* hex = std::get_if<HexLiteral>(&operand.node)) {
    return bindBinary(operand, *hex, type);
  }
  return castTo(binder.context(), binder.bind(operand), type, expression.position, style);
}

Bound bindConvert(ExpressionBinder& binder, const Expression& expression,
                  const ConvertExpression& node) {
  const SqlType type = sqlType(node.type, 30);
  std::optional<int> style;
  if (node.style) {
    const Bound bound = binder.bind(*node.style);
    if (bound.isNull()) {
      bindCast(binder, expression, *node.operand, type, std::nullopt);  // for its names alone
      return constantOf(collections::Null{}, type);
    }
    if (!bound.constant || !bound.type.isInteger()) {
      refuse(expression.position, "a style that is no integer constant");
    }
    style = bound.constant->toInt32();
  }
  return bindCast(binder, expression, *node.operand, type, style);
}

}  // namespace

Bound ExpressionBinder::bind(const Expression& expression) {
  const std::size_t kind = expression.node.index();
  const bool perGroup = scope_.grouped && !scope_.insideAggregate;
  if (perGroup && !std::holds_alternative<ColumnReference>(expression.node) &&
      hasKeyOfKind(scope_, kind) && !containsAggregate(expression)) {
    if (++context_.keyTrials > kMaxKeyTrials) refuseDepth(expression.position);
    const UngroupedView rows(scope_);
    const Bound plain = bindNode(expression);
    if (const GroupKey* key = matchingKey(scope_, kind, plain.sql)) {
      return computed(key->valueSql, key->type);
    }
  }
  Bound bound = bindNode(expression);
  if (bound.sql.size() > kMaxExpressionSize && !bound.constant) refuseDepth(expression.position);
  return bound;
}

Bound ExpressionBinder::bindAggregateArgument(const Expression& expression) {
  const UngroupedView rows(scope_);
  return bind(expression);
}

Bound ExpressionBinder::bindNode(const Expression& expression) {
  return std::visit(
      Overloaded{
          [&](const NullLiteral&) { return constantOf(collections::Null{}, SqlType{}); },
          [&](const DefaultLiteral&) -> Bound { refuse(expression.position, "DEFAULT here"); },
          [&](const IntegerLiteral& node) { return bindInteger(expression, node); },
          [&](const DecimalLiteral& node) { return bindDecimal(expression, node); },
          [&](const FloatLiteral& node) { return bindFloat(expression, node); },
          [&](const StringLiteral& node) { return bindText(node); },
          [&](const HexLiteral&) -> Bound { refuse(expression.position, "a binary constant"); },
          [&](const ParameterMarker& node) { return bindParameter(expression, node); },
          [&](const VariableReference& node) { return bindVariable(expression, node); },
          [&](const SystemVariable& node) { return bindSystemVariable(expression, node); },
          [&](const ColumnReference& node) { return bindColumn(expression, node); },
          [&](const UnaryExpression& node) { return bindUnary(*this, expression, node); },
          [&](const ArithmeticExpression& node) { return bindArithmetic(*this, node); },
          [&](const SimpleCase& node) { return bindSimpleCase(*this, expression, node); },
          [&](const SearchedCase& node) { return bindSearchedCase(*this, expression, node); },
          [&](const CastExpression& node) {
            return bindCast(*this, expression, *node.operand, sqlType(node.type, 30), std::nullopt);
          },
          [&](const ConvertExpression& node) { return bindConvert(*this, expression, node); },
          [&](const FunctionCall& node) { return bindFunction(*this, expression, node); },
          [&](const ScalarSubquery& node) { return bindScalarSubquery(node); },
          [&](const auto&) -> Bound {
            refuse(expression.position, "a condition where a value is expected");
          },
      },
      expression.node);
}

Bound ExpressionBinder::bindColumn(const Expression& expression, const ColumnReference& reference) {
  const ColumnMatch match = resolveColumn(scope_, reference.column);
  if (context_.sourcesRead != nullptr) context_.sourcesRead->push_back(match.source);
  const std::string sql = match.source->columnSql(*match.column);
  Bound bound = computed(sql, match.column->type);
  bound.nullable = match.column->nullable;
  if (!match.scope->grouped || match.scope->insideAggregate) return bound;
  const GroupKey* key = matchingKey(*match.scope, expression.node.index(), sql);
  if (key == nullptr) {
    raiseAt(expression.position, 8120,
            "Column '" + reference.column.name +
                "' is invalid in the select list because it is not contained in either an "
                "aggregate function or the GROUP BY clause.");
  }
  bound.sql = key->valueSql;
  return bound;
}

Bound ExpressionBinder::bindVariable(const Expression& expression,
                                     const VariableReference& reference) {
  const auto found = context_.scope.variables.find(reference.name);
  if (found == context_.scope.variables.end()) {
    raiseAt(expression.position, 137,
            "Must declare the scalar variable \"" + reference.name + "\".");
  }
  return constantOf(found->second.value, found->second.type);
}

Bound ExpressionBinder::bindSystemVariable(const Expression& expression,
                                           const SystemVariable& variable) {
  if (variable.name == "@@rowcount") {
    return constantOf(context_.scope.rowCount, SqlType::integer());
  }
  if (variable.name == "@@error") return constantOf(std::int64_t{0}, SqlType::integer());
  refuse(expression.position, variable.name);
}

Bound ExpressionBinder::bindParameter(const Expression& expression, const ParameterMarker& marker) {
  const auto index = static_cast<std::size_t>(marker.index);
  if (index >= context_.scope.parameters.size()) {
    raiseAt(expression.position, 201,
            "Parameter " + std::to_string(marker.index + 1) + " has no value.");
  }
  const Variable& parameter = context_.scope.parameters[index];
  return constantOf(parameter.value, parameter.type);
}

}  // namespace velmora::tsql
