#include "platform/tsql/binding/bind_expression.h"

namespace velmora::tsql {
namespace {

std::string joined(const std::vector<const BoundCondition*>& conditions, std::string_view word) {
  if (conditions.size() == 1) return conditions.front()->sql;
  std::string sql = "(";
  for (const BoundCondition* condition : conditions) {
    if (sql.size() > 1) sql += word;
    sql += condition->sql;
  }
  return sql += ")";
}

/// Conditions that can fail, each reached where those before it leave the answer open. Each is
/// named once, so that nested ones cost no more text than they have.
std::string inTurn(LogicalOperator op, const std::vector<const BoundCondition*>& conditions) {
  if (conditions.size() == 1) return conditions.front()->sql;
  std::string sql = "CASE";
  for (std::size_t i = 0; i + 1 < conditions.size(); ++i) {
    const std::string& one = conditions[i]->sql;
    sql += op == LogicalOperator::Or ? " WHEN " + one + " THEN TRUE"
                                     : " WHEN (" + one + ") IS NOT TRUE THEN FALSE";
  }
  return sql + " ELSE " + conditions.back()->sql + " END";
}

/// `unsafe`, reached where `guard` lets a row through.
std::string guarded(LogicalOperator op, const std::string& guard, const std::string& unsafe) {
  if (op == LogicalOperator::Or) return "CASE WHEN " + guard + " THEN TRUE ELSE " + unsafe + " END";
  return "CASE WHEN " + guard + " THEN " + unsafe + " ELSE FALSE END";
}

}  // namespace

BoundCondition combine(LogicalOperator op, const std::vector<BoundCondition>& conditions) {
  const std::string_view word = op == LogicalOperator::And ? " AND " : " OR ";
  std::vector<const BoundCondition*> safe;
  std::vector<const BoundCondition*> unsafe;
  for (const BoundCondition& condition : conditions) {
    (condition.canFail ? unsafe : safe).push_back(&condition);
  }
  if (unsafe.empty()) return {joined(safe, word), false};
  // The written order decides among those that can fail.
  const std::string inner = inTurn(op, unsafe);
  if (safe.empty()) return {unsafe.size() == 1 ? inner : "(" + inner + ")", true};
  const std::string guard = joined(safe, word);
  // The engine finds the rows by the guard that stands by itself; it cannot fail, so that no
  // condition around this one is guarded by it again.
  return {"(" + guard + std::string(word) + guarded(op, guard, inner) + ")", true};
}

}  // namespace velmora::tsql
