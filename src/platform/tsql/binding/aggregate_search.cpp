#include "platform/tsql/binding/aggregate_search.h"

#include <algorithm>
#include <functional>

#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

using Wanted = std::function<bool(const Expression&)>;

/// Looks for an expression within another; queries within it have their own.
class Search {
 public:
  explicit Search(Wanted wanted) : wanted_(std::move(wanted)) {}

  bool in(const Expression& expression) const {
    return wanted_(expression) ||
           std::visit([this](const auto& node) { return below(node); }, expression.node);
  }

 private:
  bool in(const ExpressionPtr& expression) const { return expression && in(*expression); }

  template <class Range, class Member>
  bool inAny(const Range& range, Member member) const {
    return std::ranges::any_of(range, [&](const auto& element) { return in(element.*member); });
  }
  bool inAny(const std::vector<ExpressionPtr>& expressions) const {
    return std::ranges::any_of(expressions, [this](const auto& one) { return in(one); });
  }
  bool inBranches(const std::vector<CaseBranch>& branches) const {
    return inAny(branches, &CaseBranch::when) || inAny(branches, &CaseBranch::then);
  }

  bool below(const UnaryExpression& node) const { return in(node.operand); }
  bool below(const ArithmeticExpression& node) const {
    return in(node.first) || inAny(node.rest, &ArithmeticExpression::Term::operand);
  }
  bool below(const SimpleCase& node) const {
    return in(node.operand) || inBranches(node.branches) || in(node.otherwise);
  }
  bool below(const SearchedCase& node) const {
    return inBranches(node.branches) || in(node.otherwise);
  }
  bool below(const CastExpression& node) const { return in(node.operand); }
  bool below(const ConvertExpression& node) const { return in(node.operand); }
  bool below(const FunctionCall& node) const {
    return inAny(node.arguments) || (node.over && (inAny(node.over->partitionBy) ||
                                                   inAny(node.over->orderBy, &OrderItem::key)));
  }
  bool below(const Comparison& node) const { return in(node.left) || in(node.right); }
  bool below(const LogicalExpression& node) const { return inAny(node.operands); }
  bool below(const NotExpression& node) const { return in(node.operand); }
  bool below(const BetweenCondition& node) const {
    return in(node.operand) || in(node.low) || in(node.high);
  }
  bool below(const InListCondition& node) const { return in(node.operand) || inAny(node.items); }
  bool below(const InSubqueryCondition& node) const { return in(node.operand); }
  bool below(const QuantifiedComparison& node) const { return in(node.operand); }
  bool below(const LikeCondition& node) const { return in(node.operand) || in(node.pattern); }
  bool below(const IsNullCondition& node) const { return in(node.operand); }
  template <class Leaf>
  bool below(const Leaf&) const {
    return false;
  }

  Wanted wanted_;
};

}  // namespace

bool isAggregate(std::string_view name) {
  static constexpr auto kNames = std::to_array<std::string_view>(
      {"sum", "avg", "min", "max", "count", "count_big", "grouping", "string_agg"});
  return std::ranges::find(kNames, name) != kNames.end();
}

bool isAggregate(const Expression& expression) {
  const auto* call = std::get_if<FunctionCall>(&expression.node);
  return call != nullptr && isAggregate(call->name) && !call->over;
}

bool containsAggregate(const Expression& expression) {
  return Search([](const Expression& one) { return isAggregate(one); }).in(expression);
}

bool containsSubqueryValue(const Expression& expression) {
  const auto wanted = [](const Expression& one) {
    return std::holds_alternative<ScalarSubquery>(one.node);
  };
  return Search(wanted).in(expression);
}

std::vector<const QualifiedName*> columnsIn(const Expression& expression) {
  std::vector<const QualifiedName*> names;
  const auto collect = [&](const Expression& one) {
    if (const auto* column = std::get_if<ColumnReference>(&one.node))
      names.push_back(&column->column);
    return false;
  };
  Search(collect).in(expression);
  return names;
}

bool dependsOnMoment(const Expression& expression) {
  static constexpr auto kNames = std::to_array<std::string_view>(
      {"getdate", "current_timestamp", "newid", "object_id", "scope_identity", "ident_current"});
  const auto depends = [](const Expression& one) {
    const auto* call = std::get_if<FunctionCall>(&one.node);
    return std::holds_alternative<SystemVariable>(one.node) ||
           (call != nullptr && std::ranges::find(kNames, call->name) != kNames.end());
  };
  return Search(depends).in(expression);
}

bool readsVariable(const Expression& expression,
                   const std::set<std::string, IgnoreCase>& variables) {
  const auto reads = [&](const Expression& one) {
    const auto* variable = std::get_if<VariableReference>(&one.node);
    return variable != nullptr && variables.contains(variable->name);
  };
  return Search(reads).in(expression);
}

}  // namespace velmora::tsql
