#pragma once

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast.h"

namespace velmora::tsql {

/// Binds expressions: resolves their names in a scope, finds their types and prints them
/// as DuckDB expressions.
class ExpressionBinder {
 public:
  ExpressionBinder(Context& context, QueryScope& scope) : context_(context), scope_(scope) {}

  Context& context() noexcept { return context_; }
  QueryScope& scope() noexcept { return scope_; }

  /// A value.
  Bound bind(const Expression& expression);
  /// A condition, for those who ask whether it is true: where it is unknown it may come out
  /// as false.
  BoundCondition bindCondition(const Expression& expression);
  /// The opposite, for those who ask whether the condition is false.
  BoundCondition bindOpposite(const Expression& expression);

  /// An aggregate's argument: names mean columns of single rows.
  Bound bindAggregateArgument(const Expression& expression);

 private:
  /// Whether a step of an assigning select takes it from the row.
  static bool isInput(const Expression& expression);
  Bound bindRow(const Expression& expression);
  const QueryScope& aggregatedScope(const Expression& argument) const;
  Bound bindNode(const Expression& expression);
  Bound bindColumn(const Expression& expression, const ColumnReference& reference);
  Bound bindVariable(const Expression& expression, const VariableReference& reference);
  Bound bindSystemVariable(const Expression& expression, const SystemVariable& variable);
  Bound bindParameter(const Expression& expression, const ParameterMarker& marker);
  Bound bindScalarSubquery(const ScalarSubquery& subquery);

  BoundCondition bindLogical(const LogicalExpression& node);
  BoundCondition bindNot(const NotExpression& node);
  BoundCondition bindComparison(const Expression& expression, const Comparison& node);
  BoundCondition bindBetween(const Expression& expression, const BetweenCondition& node);
  BoundCondition bindInList(const Expression& expression, const InListCondition& node);
  BoundCondition bindInSubquery(const Expression& expression, const InSubqueryCondition& node);
  BoundCondition bindQuantified(const Expression& expression, const QuantifiedComparison& node);
  BoundCondition bindLike(const Expression& expression, const LikeCondition& node);
  BoundCondition bindIsNull(const IsNullCondition& node);
  BoundCondition bindExists(const Expression& expression, const ExistsCondition& node);

  Context& context_;
  QueryScope& scope_;
  BoundCondition bindLeaf(const Expression& expression);

  /// Below a NOT the opposite is bound: nothing asks then whether a condition is false or unknown.
  bool negated_ = false;
};

/// Values with their own rules, one file each.
Bound bindInteger(const Expression& expression, const IntegerLiteral& literal);
Bound bindDecimal(const Expression& expression, const DecimalLiteral& literal);
Bound bindFloat(const Expression& expression, const FloatLiteral& literal);
Bound bindText(const StringLiteral& literal);
/// A binary constant that is cast to an integer or to a text of ASCII characters; refused for
/// any other type.
Bound bindBinary(const Expression& expression, const HexLiteral& literal, const SqlType& type);

Bound bindUnary(ExpressionBinder& binder, const Expression& expression,
                const UnaryExpression& unary);
Bound bindArithmetic(ExpressionBinder& binder, const ArithmeticExpression& arithmetic);
/// `left op right` of bound operands.
Bound bindOperator(ExpressionBinder& binder, ArithmeticOperator op, Bound left, Bound right,
                   Position position);

Bound bindSimpleCase(ExpressionBinder& binder, const Expression& expression,
                     const SimpleCase& node);
Bound bindSearchedCase(ExpressionBinder& binder, const Expression& expression,
                       const SearchedCase& node);
/// The first of the values that is not NULL; the type is the common one.
Bound bindCoalesce(Context& context, std::vector<Bound> values, Position position);

Bound bindFunction(ExpressionBinder& binder, const Expression& expression,
                   const FunctionCall& call);

/// The operator between blanks.
std::string_view symbol(ComparisonOperator op);
/// An identity number as @@identity gives it; NULL when there is none.
Bound identityConstant(const std::optional<std::int64_t>& number);

/// What of a value is compared in the common type: numbers stand as they are, so that
/// columns stay free of wrappers; texts by their key.
Bound comparand(Context& context, const Bound& value, const SqlType& common, Position position);
/// `left op right` as a condition, operands brought to their common type.
BoundCondition compare(Context& context, ComparisonOperator op, const Bound& left,
                       const Bound& right, Position position);
/// AND or OR of conditions. Those that can fail are reached only by rows that the others
/// let through. An unknown AND may come out as false.
BoundCondition combine(LogicalOperator op, const std::vector<BoundCondition>& conditions);

}  // namespace velmora::tsql
