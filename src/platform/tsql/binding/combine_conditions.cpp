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

/// `unsafe`, reached where `guard` lets a row through.
std::string guarded(LogicalOperator op, const std::string& guard, const std::string& unsafe,
                    bool exactUnknown) {
  if (op == LogicalOperator::Or) return "CASE WHEN " + guard + " THEN TRUE ELSE " + unsafe + " END";
  // Unknown AND false is false: below a NOT the rows that are not surely out count as well.
  const std::string reached = exactUnknown ? "(" + guard + " IS NOT FALSE)" : guard;
  return "CASE WHEN " + reached + " THEN " + unsafe + " ELSE FALSE END";
}

}  // namespace

BoundCondition combine(LogicalOperator op, const std::vector<BoundCondition>& conditions,
                       bool exactUnknown) {
  const std::string_view word = op == LogicalOperator::And ? " AND " : " OR ";
  std::vector<const BoundCondition*> safe;
  std::vector<const BoundCondition*> unsafe;
  for (const BoundCondition& condition : conditions) {
    (condition.canFail ? unsafe : safe).push_back(&condition);
  }
  if (unsafe.empty()) return {joined(safe, word), false};
  if (safe.empty() && unsafe.size() == 1) return *unsafe.front();
  // The written order decides among those that can fail.
  std::string inner = unsafe.back()->sql;
  for (std::size_t i = unsafe.size() - 1; i-- > 0;) {
    inner = guarded(op, unsafe[i]->sql, inner, exactUnknown);
    if (exactUnknown || op == LogicalOperator::Or) {
      std::string both = "(" + unsafe[i]->sql;
      inner = both.append(word).append(inner).append(")");
    }
  }
  if (safe.empty()) return {"(" + inner + ")", true};
  const std::string guard = joined(safe, word);
  return {"(" + guard + std::string(word) + guarded(op, guard, inner, exactUnknown) + ")", true};
}

}  // namespace velmora::tsql
