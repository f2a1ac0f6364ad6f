#include "platform/tsql/binding/bind_outer_join.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/types/type_rules.h"

namespace velmora::tsql {
namespace {

/// The sides of the join that a condition reads.
using Sides = unsigned;
constexpr Sides kNone = 0, kLeft = 1, kRight = 2, kBoth = 3, kElsewhere = 4;

struct Key {
  std::string left, right;
};

/// One of the conditions that must all hold.
struct Term {
  BoundCondition condition;
  Sides sides = kNone;
  bool comparesSides = false;   ///< a value of one side with a value of the other
  std::optional<Key> key = {};  ///< of such an equality that cannot fail
};
using Terms = std::vector<Term>;

std::vector<BoundCondition> conditionsOf(const Terms& terms) {
  std::vector<BoundCondition> conditions;
  for (const Term& term : terms) conditions.push_back(term.condition);
  return conditions;
}

BoundCondition all(const Terms& terms) {
  return combine(LogicalOperator::And, conditionsOf(terms));
}

bool contains(const Terms& terms, const Term& wanted) {
  return std::ranges::any_of(
      terms, [&](const Term& term) { return term.condition.sql == wanted.condition.sql; });
}

/// Notes the sources whose columns are read while it lives.
class SourcesRead {
 public:
  explicit SourcesRead(Context& context) : context_(context), before_(context.sourcesRead) {
    context_.sourcesRead = &read_;
  }
  ~SourcesRead() {
    context_.sourcesRead = before_;
    if (before_ != nullptr) before_->insert(before_->end(), read_.begin(), read_.end());
  }
  SourcesRead(const SourcesRead&) = delete;
  SourcesRead& operator=(const SourcesRead&) = delete;

  const std::vector<const Source*>& list() const { return read_; }

 private:
  Context& context_;
  std::vector<const Source*>* before_;
  std::vector<const Source*> read_;
};

/// Binds a condition as terms.
class TermBinder {
 public:
  TermBinder(Context& context, QueryScope& scope, std::size_t left, std::size_t right)
      : context_(context), scope_(scope), left_(left), right_(right) {}

  Terms bind(const Expression& expression) {
    if (const auto* logical = std::get_if<LogicalExpression>(&expression.node)) {
      return logical->op == LogicalOperator::And ? bindAnd(*logical) : bindOr(*logical);
    }
    if (const auto* comparison = std::get_if<Comparison>(&expression.node)) {
      return {bindComparison(*comparison, expression.position)};
    }
    Term term;
    const SourcesRead read(context_);
    term.condition = ExpressionBinder(context_, scope_).bindCondition(expression);
    term.sides = sidesOf(read);
    return {std::move(term)};
  }

 private:
  Terms bindAnd(const LogicalExpression& node) {
    Terms terms;
    for (const ExpressionPtr& operand : node.operands) {
      std::ranges::move(bind(*operand), std::back_inserter(terms));
    }
    return terms;
  }

  /// (a AND x) OR (a AND y) is a AND (x OR y).
  Terms bindOr(const LogicalExpression& node) {
    std::vector<Terms> branches;
    for (const ExpressionPtr& operand : node.operands) branches.push_back(bind(*operand));
    Terms shared;
    for (const Term& term : branches.front()) {
      const auto has = [&](const Terms& branch) { return contains(branch, term); };
      if (!term.condition.canFail && std::ranges::all_of(branches, has)) shared.push_back(term);
    }
    Term rest;
    std::vector<BoundCondition> alternatives;
    for (Terms& branch : branches) {
      std::erase_if(branch, [&](const Term& term) { return contains(shared, term); });
      if (branch.empty()) return shared;
      for (const Term& term : branch) rest.sides |= term.sides;
      alternatives.push_back(all(branch));
    }
    rest.condition = combine(LogicalOperator::Or, alternatives);
    shared.push_back(std::move(rest));
    return shared;
  }

  Term bindComparison(const Comparison& node, Position position) {
    const auto [left, leftSides] = bindOperand(*node.left);
    const auto [right, rightSides] = bindOperand(*node.right);
    Term term;
    term.condition = compare(context_, node.op, left, right, position);
    term.sides = leftSides | rightSides;
    term.comparesSides = term.sides == kBoth && leftSides != kBoth && rightSides != kBoth;
    if (!term.comparesSides || node.op != ComparisonOperator::Equal || term.condition.canFail) {
      return term;
    }
    const SqlType common = commonType(left.type, right.type);
    term.key = {comparand(context_, left, common, position).sql,
                comparand(context_, right, common, position).sql};
    if (leftSides == kRight) std::swap(term.key->left, term.key->right);
    return term;
  }

  std::pair<Bound, Sides> bindOperand(const Expression& operand) {
    const SourcesRead read(context_);
    Bound bound = ExpressionBinder(context_, scope_).bind(operand);
    return {std::move(bound), sidesOf(read)};
  }

  Sides sidesOf(const SourcesRead& read) const {
    Sides sides = kNone;
    for (const Source* source : read.list()) sides |= sideOf(source);
    return sides;
  }

  /// What a subquery in the condition reads of its own sources reads no side.
  Sides sideOf(const Source* source) const {
    for (const QueryScope* at = &scope_; at != nullptr; at = at->outer) {
      for (std::size_t i = 0; i < at->sources.size(); ++i) {
        if (&at->sources[i] != source) continue;
        if (at != &scope_ || i < left_) return kElsewhere;
        return i < right_ ? kLeft : kRight;
      }
    }
    return kNone;
  }

  Context& context_;
  QueryScope& scope_;
  std::size_t left_, right_;
};

/// Whether a join that can only compare values of both sides cannot take the term.
bool needsBothRows(const Term& term) {
  return term.condition.canFail || (term.sides == kBoth && !term.comparesSides);
}

std::string guarded(const Terms& guards, const std::string& key) {
  if (guards.empty()) return key;
  return "CASE WHEN " + all(guards).sql + " THEN " + key + " END";
}

/// The terms that `taken` are out of `terms`.
template <class Predicate>
Terms take(Terms& terms, Predicate taken) {
  Terms found;
  std::ranges::copy_if(terms, std::back_inserter(found), taken);
  std::erase_if(terms, taken);
  return found;
}

/// The equality at `key` with the conditions on the kept sides as part of it.
BoundCondition withGuardedKey(Terms terms, JoinKind kind) {
  const Sides constants = kind == JoinKind::Right ? kRight : kLeft;
  const auto guards = [&](Sides side) {
    return take(terms, [&](const Term& term) {
      return !term.condition.canFail &&
             (term.sides == side || (term.sides == kNone && side == constants));
    });
  };
  const Terms left = kind == JoinKind::Right ? Terms{} : guards(kLeft);
  const Terms right = kind == JoinKind::Left ? Terms{} : guards(kRight);
  if (!left.empty() || !right.empty()) {
    Term& keyed =
        *std::ranges::find_if(terms, [](const Term& term) { return term.key.has_value(); });
    keyed.condition.sql =
        "(" + guarded(left, keyed.key->left) + " = " + guarded(right, keyed.key->right) + ")";
  }
  return all(terms);
}

/// Whether a column is called like one of the sources; renameHiding sees none to its right.
bool hidesAny(const Source& source, std::span<const Source> others) {
  return std::ranges::any_of(source.columns, [&](const SourceColumn& column) {
    return std::ranges::any_of(
        others, [&](const Source& other) { return sameName(other.engine, column.quoted()); });
  });
}

}  // namespace

BoundOn bindOuterJoin(Context& context, QueryScope& scope, const Join& join, std::size_t left,
                      std::size_t right) {
  Terms terms = TermBinder(context, scope, left, right).bind(*join.on);
  const bool oneOther =
      join.kind == JoinKind::Left
          ? scope.sources.size() == right + 1
          : join.kind == JoinKind::Right && right == left + 1 &&
                !hidesAny(scope.sources[left], std::span(scope.sources).subspan(right));
  const bool hashable =
      std::ranges::any_of(terms, [](const Term& term) { return term.key.has_value(); }) &&
      std::ranges::none_of(terms, [](const Term& term) { return term.sides > kBoth; });
  if (!hashable) {
    const bool keepsLeft = join.kind == JoinKind::Left;
    return {all(terms), keepsLeft && oneOther && containsSubqueryValue(*join.on)};
  }
  if (oneOther && std::ranges::any_of(terms, needsBothRows)) return {all(terms), true};
  return {withGuardedKey(std::move(terms), join.kind)};
}

}  // namespace velmora::tsql
