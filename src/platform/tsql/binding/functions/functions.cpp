#include "platform/tsql/binding/functions/functions.h"

#include <algorithm>
#include <limits>

#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"

namespace velmora::tsql {
namespace {

const FunctionRule* findRule(std::string_view name) {
  for (const auto rules :
       {textFunctions(), numberFunctions(), dateFunctions(), systemFunctions()}) {
    const auto found = std::ranges::find(rules, name, &FunctionRule::name);
    if (found != rules.end()) return &*found;
  }
  return nullptr;
}

void checkCount(const FunctionRule& rule, const FunctionCall& call, Position position) {
  if (call.arguments.size() >= rule.fewest && call.arguments.size() <= rule.most) return;
  std::string wanted = std::to_string(rule.fewest);
  if (rule.most == std::numeric_limits<std::size_t>::max()) wanted += " or more";
  if (rule.most > rule.fewest && rule.most < 100) wanted += " to " + std::to_string(rule.most);
  raiseAt(position, 174,
          "The " + call.name + " function requires " + wanted + " argument(s), not " +
              std::to_string(call.arguments.size()) + ".");
}

Bound converted(const Call& call, std::size_t index, const SqlType& type) {
  return castTo(call.binder().context(), call.argument(index), type,
                call.expression(index).position);
}

}  // namespace

Bound Call::text(std::size_t index) const {
  Bound value = argument(index);
  if (value.type.isText()) return value;
  return castTo(binder_.context(), value, SqlType::varchar(SqlType::kMaxLength),
                expression(index).position);
}

Bound Call::integer(std::size_t index) const {
  return converted(*this, index, SqlType::integer());
}
Bound Call::dateTime(std::size_t index) const {
  Bound value = argument(index);
  if (value.type.isDate()) return value;
  return castTo(binder_.context(), value, SqlType::dateTime(), expression(index).position);
}
Bound Call::floating(std::size_t index) const {
  return converted(*this, index, SqlType::floating());
}

int Call::constantInteger(std::size_t index) const {
  const Bound value = integer(index);
  if (!value.constant || value.isNull()) {
    refuse(expression(index).position, "an argument " + std::to_string(index + 1) + " of " +
                                           call_.name + " that is no integer constant");
  }
  return value.constant->toInt32();
}

std::string Call::constantText(std::size_t index) const {
  const Bound value = argument(index);
  if (!value.constant || !value.type.isText() || value.isNull()) {
    refuse(expression(index).position, "an argument " + std::to_string(index + 1) + " of " +
                                           call_.name + " that is no text constant");
  }
  return std::string(value.constant->text());
}

Bound bindFunction(ExpressionBinder& binder, const Expression& expression,
                   const FunctionCall& syntax) {
  const Call call(binder, expression, syntax);
  if (syntax.over) return bindWindowFunction(call);
  if (isAggregate(syntax.name)) return bindAggregate(call);
  const FunctionRule* rule = findRule(syntax.name);
  if (rule == nullptr) {
    raiseAt(expression.position, 195,
            "'" + syntax.name + "' is not a recognized built-in function name.");
  }
  checkCount(*rule, syntax, expression.position);
  return rule->bind(call);
}

}  // namespace velmora::tsql
