#include "platform/tsql/binding/bind_expression.h"

#include <cctype>

#include "platform/tsql/binding/accumulation.h"
#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/syntax/limits.h"
#include "platform/tsql/syntax/overloaded.h"
#include "velmora/collections/decimal.h"
#include "velmora/com/error.h"

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

/// The query that has the column; null for a name that is none, such as a part of a date.
const QueryScope* scopeOf(const QueryScope& scope, const QualifiedName& name) {
  try {
    return resolveColumn(scope, name).scope;
  } catch (const com::Error&) {
    return nullptr;
  }
}

bool encloses(const QueryScope& outer, const QueryScope& inner) {
  for (const QueryScope* at = inner.outer; at != nullptr; at = at->outer) {
    if (at == &outer) return true;
  }
  return false;
}

/// The assigning select, this one or around it, that gives the variable a new value.
const Accumulation* pendingIn(const QueryScope& scope, const std::string& variable) {
  for (const QueryScope* at = &scope; at != nullptr; at = at->outer) {
    if (at->accumulation != nullptr && at->accumulation->pending.contains(variable)) {
      return at->accumulation;
    }
  }
  return nullptr;
}

/// Binds as a row of the ungrouped query.
class UngroupedView {
 public:
  explicit UngroupedView(const QueryScope& scope) : scope_(scope), before_(scope.insideAggregate) {
    scope_.insideAggregate = true;
  }
  ~UngroupedView() { scope_.insideAggregate = before_; }
  UngroupedView(const UngroupedView&) = delete;
  UngroupedView& operator=(const UngroupedView&) = delete;

 private:
  const QueryScope& scope_;
  bool before_;
};

bool isRefusal(const com::Error& error) {
  return !std::isdigit(static_cast<unsigned char>(error.description().front()));
}

/// try_cast: NULL for a value that cannot be converted. An error of the operand itself
/// stays one, so it is evaluated outside.
Bound bindAttempt(ExpressionBinder& binder, const Expression& expression, const Expression& operand,
                  const SqlType& type, std::optional<int> style) {
  const Bound value = binder.bind(operand);
  if (value.constant) {
    try {
      const Bound whole = castTo(binder.context(), value, type, expression.position, style);
      if (whole.constant) return whole;
    } catch (const com::Error& error) {
      if (isRefusal(error)) throw;
      return constantOf(collections::Null{}, type);
    }
  }
  const Bound inner =
      castTo(binder.context(), computed("v", value.type), type, expression.position, style);
  return computed(
      "list_transform([" + exactSql(value) + "], lambda v: TRY(" + exactSql(inner) + "))[1]", type,
      value.canFail);
}

Bound bindCast(ExpressionBinder& binder, const Expression& expression, const Expression& operand,
               const SqlType& type, std::optional<int> style, bool attempt) {
  if (const auto* hex = std::get_if<HexLiteral>(&operand.node)) {
    return bindBinary(operand, *hex, type);
  }
  if (attempt) return bindAttempt(binder, expression, operand, type, style);
  return castTo(binder.context(), binder.bind(operand), type, expression.position, style);
}

Bound bindConvert(ExpressionBinder& binder, const Expression& expression,
                  const ConvertExpression& node) {
  const SqlType type = sqlType(node.type, 30);
  std::optional<int> style;
  if (node.style) {
    const Bound bound = binder.bind(*node.style);
    if (bound.isNull()) {
      bindCast(binder, expression, *node.operand, type, std::nullopt,
               node.attempt);  // for its names alone
      return constantOf(collections::Null{}, type);
    }
    if (!bound.constant || !bound.type.isInteger()) {
      refuse(expression.position, "a style that is no integer constant");
    }
    style = bound.constant->toInt32();
  }
  return bindCast(binder, expression, *node.operand, type, style, node.attempt);
}

}  // namespace

Bound identityConstant(const std::optional<std::int64_t>& number) {
  const SqlType type = SqlType::decimal(38, 0);
  if (!number) return constantOf(collections::Null{}, type);
  return constantOf(collections::Decimal::parse(std::to_string(*number)), type);
}

Bound ExpressionBinder::bind(const Expression& expression) {
  Accumulation* steps = scope_.accumulation;
  if (steps == nullptr || !steps->stepwise || !isInput(expression)) return bindRow(expression);
  const WithinInput row(steps);
  return steps->input(bindRow(expression), expression.position);
}

bool ExpressionBinder::isInput(const Expression& expression) {
  if (std::holds_alternative<ColumnReference>(expression.node) ||
      std::holds_alternative<ScalarSubquery>(expression.node)) {
    return true;
  }
  const auto* call = std::get_if<FunctionCall>(&expression.node);
  return call != nullptr && (call->over || isAggregate(call->name));
}

Bound ExpressionBinder::bindRow(const Expression& expression) {
  const std::size_t kind = expression.node.index();
  const bool perGroup = scope_.grouped && !scope_.insideAggregate;
  if (perGroup && !std::holds_alternative<ColumnReference>(expression.node) &&
      hasKeyOfKind(scope_, kind) && !containsAggregate(expression)) {
    if (++context_.keyTrials > kMaxKeyTrials) refuseDepth(expression.position);
    const UngroupedView rows(scope_);
    Accumulation* steps = scope_.accumulation;
    const bool step = steps != nullptr && steps->stepwise;
    const WithinInput row(steps);
    const Bound plain = bindNode(expression);
    if (const GroupKey* key = matchingKey(scope_, kind, plain.sql)) {
      const Bound value = computed(key->valueSql, key->type);
      return step ? steps->input(value, expression.position) : value;
    }
  }
  Bound bound = bindNode(expression);
  if (bound.sql.size() > kMaxExpressionSize && !bound.constant) refuseDepth(expression.position);
  return bound;
}

Bound ExpressionBinder::bindAggregateArgument(const Expression& expression) {
  const UngroupedView rows(aggregatedScope(expression));
  return bind(expression);
}

/// The query whose rows are added up: an argument of the outer query's columns alone belongs
/// to the outer query.
const QueryScope& ExpressionBinder::aggregatedScope(const Expression& argument) const {
  const QueryScope* innermost = nullptr;
  for (const QualifiedName* name : columnsIn(argument)) {
    const QueryScope* owner = scopeOf(scope_, *name);
    if (owner == &scope_) return scope_;
    if (owner != nullptr && (innermost == nullptr || encloses(*innermost, *owner))) {
      innermost = owner;
    }
  }
  if (innermost == nullptr) return scope_;
  if (!scope_.sources.empty() || !innermost->grouped || !innermost->aggregatesAllowed ||
      innermost->insideAggregate) {
    refuse(argument.position, "an aggregate of the outer query's columns here");
  }
  return *innermost;
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
            return bindCast(*this, expression, *node.operand, sqlType(node.type, 30), std::nullopt,
                            node.attempt);
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
  if (const Accumulation* steps = pendingIn(scope_, reference.name)) {
    if (steps != scope_.accumulation || !steps->stepwise) {
      refuse(expression.position, "reading " + reference.name +
                                      ", which the same select assigns, in a query or an "
                                      "aggregate within it");
    }
    return computed(Accumulation::variableSql(reference.name), found->second.type);
  }
  return constantOf(found->second.value, found->second.type);
}

Bound ExpressionBinder::bindSystemVariable(const Expression& expression,
                                           const SystemVariable& variable) {
  if (variable.name == "@@rowcount") {
    return constantOf(context_.scope.rowCount, SqlType::integer());
  }
  const Scope& seen = context_.scope;
  if (variable.name == "@@error") {
    return constantOf(static_cast<std::int64_t>(seen.lastError), SqlType::integer());
  }
  if (variable.name == "@@trancount") {
    return constantOf(static_cast<std::int64_t>(seen.transactions), SqlType::integer());
  }
  if (variable.name == "@@identity") return identityConstant(seen.lastIdentity);
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
