#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/engine/engine_expressions.h"

namespace velmora::tsql {
namespace {

struct BoundBranch {
  BoundCondition when;
  Bound then;
};

/// The type of all results; raises 8133 when none says one.
SqlType resultType(const std::vector<BoundBranch>& branches, const Bound* otherwise,
                   Position position) {
  SqlType type = branches.front().then.type;
  for (const BoundBranch& branch : branches) type = commonType(type, branch.then.type);
  if (otherwise != nullptr) type = commonType(type, otherwise->type);
  if (type.kind == SqlKind::untypedNull) {
    raiseAt(position, 8133,
            "At least one of the result expressions in a CASE specification must be an "
            "expression other than the NULL constant.");
  }
  return type;
}

Bound assemble(Context& context, const std::vector<BoundBranch>& branches, const Bound* otherwise,
               Position position) {
  const SqlType type = resultType(branches, otherwise, position);
  Bound result = computed("(CASE", type);
  const auto add = [&](std::string_view word, const Bound& value) {
    const Bound converted = convertTo(context, value, type, position);
    result.sql.append(word).append(exactSql(converted));
    result.canFail = result.canFail || converted.canFail;
  };
  for (const BoundBranch& branch : branches) {
    result.sql += " WHEN " + branch.when.sql;
    result.canFail = result.canFail || branch.when.canFail;
    add(" THEN ", branch.then);
  }
  if (otherwise != nullptr) add(" ELSE ", *otherwise);
  result.sql += " END)";
  return result;
}

}  // namespace

Bound bindSimpleCase(ExpressionBinder& binder, const Expression& expression,
                     const SimpleCase& node) {
  const Bound value = binder.bind(*node.operand);
  std::vector<Bound> wanted, results;
  for (const CaseBranch& branch : node.branches) {
    wanted.push_back(binder.bind(*branch.when));
    results.push_back(binder.bind(*branch.then));
  }
  std::optional<Bound> otherwise;
  if (node.otherwise) otherwise = binder.bind(*node.otherwise);
  const auto casesOf = [&](const Bound& operand) {
    std::vector<BoundBranch> branches;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      branches.push_back({compare(binder.context(), ComparisonOperator::Equal, operand, wanted[i],
                                  node.branches[i].when->position),
                          results[i]});
    }
    return assemble(binder.context(), branches, otherwise ? &*otherwise : nullptr,
                    expression.position);
  };
  if (node.branches.size() == 1 || costsNothingTwice(value)) return casesOf(value);
  Bound result = casesOf(namedOnce(value, 0));
  // The engine takes no query there.
  if (result.sql.find("SELECT ") != std::string::npos) return casesOf(value);
  result.sql = engine::once(std::array{value.sql}, result.sql);
  result.canFail = result.canFail || value.canFail;
  return result;
}

Bound bindSearchedCase(ExpressionBinder& binder, const Expression& expression,
                       const SearchedCase& node) {
  std::vector<BoundBranch> branches;
  for (const CaseBranch& branch : node.branches) {
    BoundCondition when = binder.bindCondition(*branch.when);
    branches.push_back({std::move(when), binder.bind(*branch.then)});
  }
  if (!node.otherwise) return assemble(binder.context(), branches, nullptr, expression.position);
  const Bound last = binder.bind(*node.otherwise);
  return assemble(binder.context(), branches, &last, expression.position);
}

Bound bindCoalesce(Context& context, std::vector<Bound> values, Position position) {
  SqlType type = values.front().type;
  for (const Bound& value : values) type = commonType(type, value.type);
  if (type.kind == SqlKind::untypedNull) {
    raiseAt(position, 4127,
            "At least one of the arguments to COALESCE must be an expression "
            "that is not the NULL constant.");
  }
  Bound result = computed("coalesce(", type);
  result.nullable = true;
  bool first = true;
  for (const Bound& value : values) {
    const Bound converted = convertTo(context, value, type, position);
    result.sql.append(first ? "" : ", ").append(exactSql(converted));
    result.canFail = result.canFail || converted.canFail;
    first = false;
  }
  result.sql += ")";
  return result;
}

}  // namespace velmora::tsql
