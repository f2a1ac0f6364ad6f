#include "platform/tsql/binding/aggregate_search.h"

#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

bool in(const ExpressionPtr& expression) {
  return expression && containsAggregate(*expression);
}

template <class Range, class Member>
bool inAny(const Range& range, Member member) {
  for (const auto& element : range) {
    if (in(element.*member)) return true;
  }
  return false;
}

bool inAny(const std::vector<ExpressionPtr>& expressions) {
  for (const ExpressionPtr& expression : expressions) {
    if (in(expression)) return true;
  }
  return false;
}

bool inBranches(const std::vector<CaseBranch>& branches) {
  return inAny(branches, &CaseBranch::when) || inAny(branches, &CaseBranch::then);
}

}  // namespace

bool isAggregate(std::string_view name) {
  static constexpr auto kNames = std::to_array<std::string_view>(
      {"sum", "avg", "min", "max", "count", "count_big", "grouping"});
  return std::ranges::find(kNames, name) != kNames.end();
}

bool containsAggregate(const Expression& expression) {
  return std::visit(
      Overloaded{
          [](const UnaryExpression& node) { return in(node.operand); },
          [](const ArithmeticExpression& node) {
            return in(node.first) || inAny(node.rest, &ArithmeticExpression::Term::operand);
          },
          [](const SimpleCase& node) {
            return in(node.operand) || inBranches(node.branches) || in(node.otherwise);
          },
          [](const SearchedCase& node) { return inBranches(node.branches) || in(node.otherwise); },
          [](const CastExpression& node) { return in(node.operand); },
          [](const ConvertExpression& node) { return in(node.operand); },
          [](const FunctionCall& node) {
            return (isAggregate(node.name) && !node.over) || inAny(node.arguments);
          },
          [](const Comparison& node) { return in(node.left) || in(node.right); },
          [](const LogicalExpression& node) { return inAny(node.operands); },
          [](const NotExpression& node) { return in(node.operand); },
          [](const BetweenCondition& node) {
            return in(node.operand) || in(node.low) || in(node.high);
          },
          [](const InListCondition& node) { return in(node.operand) || inAny(node.items); },
          [](const InSubqueryCondition& node) { return in(node.operand); },
          [](const LikeCondition& node) { return in(node.operand) || in(node.pattern); },
          [](const IsNullCondition& node) { return in(node.operand); },
          [](const auto&) { return false; },
      },
      expression.node);
}

}  // namespace velmora::tsql
