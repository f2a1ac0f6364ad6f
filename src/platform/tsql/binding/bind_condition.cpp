#include <utility>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/syntax/limits.h"
#include "platform/tsql/syntax/overloaded.h"
#include "platform/tsql/values/code_points.h"

namespace velmora::tsql {
namespace {

std::string negation(bool negated) {
  return negated ? " NOT" : "";
}

/// Whether the common type has all decimals of the value's. Where both together need more than
/// 38 digits it has fewer, and the value is rounded before it is compared.
bool keepsDecimals(const SqlType& type, const SqlType& common) {
  return common.kind != SqlKind::decimal || type.scale <= common.scale;
}

}  // namespace

std::string_view symbol(ComparisonOperator op) {
  switch (op) {
    case ComparisonOperator::Equal:
      return " = ";
    case ComparisonOperator::NotEqual:
      return " <> ";
    case ComparisonOperator::Less:
      return " < ";
    case ComparisonOperator::LessOrEqual:
      return " <= ";
    case ComparisonOperator::Greater:
      return " > ";
    case ComparisonOperator::GreaterOrEqual:
      return " >= ";
  }
  return "";
}

Bound comparand(Context& context, const Bound& value, const SqlType& common, Position position) {
  if (common.isNumber() && value.type.isNumber() && keepsDecimals(value.type, common)) return value;
  Bound converted = convertTo(context, value, common, position);
  if (common.isText()) converted.sql = keySql(converted);
  return converted;
}

BoundCondition compare(Context& context, ComparisonOperator op, const Bound& left,
                       const Bound& right, Position position) {
  const SqlType common = commonType(left.type, right.type);
  const Bound a = comparand(context, left, common, position);
  const Bound b = comparand(context, right, common, position);
  std::string sql = "(";
  sql.append(a.sql).append(symbol(op)).append(b.sql).append(")");
  return {std::move(sql), a.canFail || b.canFail};
}

BoundCondition ExpressionBinder::bindCondition(const Expression& expression) {
  if (const auto* logical = std::get_if<LogicalExpression>(&expression.node)) {
    return bindLogical(*logical);
  }
  if (const auto* opposite = std::get_if<NotExpression>(&expression.node)) {
    return bindNot(*opposite);
  }
  const bool negate = std::exchange(negated_, false);
  BoundCondition result = bindLeaf(expression);
  negated_ = negate;
  if (negate) result.sql = "(NOT " + result.sql + ")";
  if (result.sql.size() > kMaxExpressionSize) refuseDepth(expression.position);
  return result;
}

BoundCondition ExpressionBinder::bindLeaf(const Expression& expression) {
  return std::visit(
      Overloaded{
          [&](const Comparison& node) { return bindComparison(expression, node); },
          [&](const BetweenCondition& node) { return bindBetween(expression, node); },
          [&](const InListCondition& node) { return bindInList(expression, node); },
          [&](const InSubqueryCondition& node) { return bindInSubquery(expression, node); },
          [&](const QuantifiedComparison& node) { return bindQuantified(expression, node); },
          [&](const LikeCondition& node) { return bindLike(expression, node); },
          [&](const IsNullCondition& node) { return bindIsNull(node); },
          [&](const ExistsCondition& node) { return bindExists(expression, node); },
          [&](const auto&) -> BoundCondition {
            raiseAt(expression.position, 4145,
                    "An expression of non-boolean type specified in a context where a "
                    "condition is expected.");
          },
      },
      expression.node);
}

BoundCondition ExpressionBinder::bindComparison(const Expression& expression,
                                                const Comparison& node) {
  const Bound left = bind(*node.left);
  return compare(context_, node.op, left, bind(*node.right), expression.position);
}

BoundCondition ExpressionBinder::bindLogical(const LogicalExpression& node) {
  std::vector<BoundCondition> conditions;
  conditions.reserve(node.operands.size());
  for (const ExpressionPtr& operand : node.operands) conditions.push_back(bindCondition(*operand));
  // NOT (a AND b) is NOT a OR NOT b.
  const bool conjunction = (node.op == LogicalOperator::And) != negated_;
  return combine(conjunction ? LogicalOperator::And : LogicalOperator::Or, conditions);
}

BoundCondition ExpressionBinder::bindNot(const NotExpression& node) {
  return bindOpposite(*node.operand);
}

BoundCondition ExpressionBinder::bindOpposite(const Expression& expression) {
  negated_ = !negated_;
  BoundCondition result = bindCondition(expression);
  negated_ = !negated_;
  return result;
}

BoundCondition ExpressionBinder::bindBetween(const Expression& expression,
                                             const BetweenCondition& node) {
  const Bound operand = bind(*node.operand);
  const Bound low = bind(*node.low);
  const Bound high = bind(*node.high);
  SqlType common = commonType(operand.type, commonType(low.type, high.type));
  const Bound value = comparand(context_, operand, common, expression.position);
  const Bound from = comparand(context_, low, common, expression.position);
  const Bound to = comparand(context_, high, common, expression.position);
  return {
      "(" + value.sql + negation(node.negated) + " BETWEEN " + from.sql + " AND " + to.sql + ")",
      value.canFail || from.canFail || to.canFail};
}

BoundCondition ExpressionBinder::bindInList(const Expression& expression,
                                            const InListCondition& node) {
  const Bound operand = bind(*node.operand);
  SqlType common = operand.type;
  std::vector<Bound> items;
  items.reserve(node.items.size());
  for (const ExpressionPtr& item : node.items) {
    items.push_back(bind(*item));
    common = commonType(common, items.back().type);
  }
  const Bound value = comparand(context_, operand, common, expression.position);
  BoundCondition result{"(" + value.sql + negation(node.negated) + " IN (", value.canFail};
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Bound item = comparand(context_, items[i], common, node.items[i]->position);
    result.sql.append(i == 0 ? "" : ", ").append(item.sql);
    result.canFail = result.canFail || item.canFail;
  }
  result.sql += "))";
  return result;
}

BoundCondition ExpressionBinder::bindLike(const Expression& expression, const LikeCondition& node) {
  const Bound operand = bind(*node.operand);
  const Bound wanted = bind(*node.pattern);
  const bool loose = !operand.type.isNational() && !wanted.type.isNational();
  const SqlType text = SqlType::nvarchar(SqlType::kMaxLength);
  const Bound value = castTo(context_, operand, text, expression.position);
  const Bound pattern = castTo(context_, wanted, text, expression.position);
  std::string escape;
  if (node.escape) {
    const Bound bound = bind(*node.escape);
    if (!bound.constant || bound.isNull() || !bound.type.isText() ||
        values::codePoints(bound.constant->text()).size() != 1) {
      raiseAt(node.escape->position, 506, "The ESCAPE of LIKE must be one character.");
    }
    escape = bound.constant->text();
  }
  BoundCondition result = likeCondition(value, pattern, escape, loose);
  result.sql = (node.negated ? "(NOT " : "(") + result.sql + ")";
  return result;
}

BoundCondition ExpressionBinder::bindIsNull(const IsNullCondition& node) {
  const Bound operand = bind(*node.operand);
  return {"(" + operand.sql + (node.negated ? " IS NOT NULL)" : " IS NULL)"), operand.canFail};
}

}  // namespace velmora::tsql
