#pragma once

#include <span>
#include <string_view>

#include "platform/tsql/binding/bind_expression.h"

namespace velmora::tsql {

/// One call of a function, its arguments bound on demand (some are not values, such as
/// the part in dateadd(month, 1, d)).
class Call {
 public:
  Call(ExpressionBinder& binder, const Expression& expression, const FunctionCall& call)
      : binder_(binder), expression_(expression), call_(call) {}

  ExpressionBinder& binder() const { return binder_; }
  Position position() const { return expression_.position; }
  std::size_t count() const { return call_.arguments.size(); }
  const FunctionCall& syntax() const { return call_; }
  const Expression& expression(std::size_t index) const { return *call_.arguments[index]; }

  Bound argument(std::size_t index) const { return binder_.bind(expression(index)); }
  /// The argument as a text; numbers and dates are converted.
  Bound text(std::size_t index) const;
  /// The argument as an int.
  Bound integer(std::size_t index) const;
  Bound dateTime(std::size_t index) const;
  Bound floating(std::size_t index) const;
  /// An integer constant; refused otherwise.
  int constantInteger(std::size_t index) const;
  /// A constant text; refused otherwise.
  std::string constantText(std::size_t index) const;

 private:
  ExpressionBinder& binder_;
  const Expression& expression_;
  const FunctionCall& call_;
};

/// A function of T-SQL: how many arguments it takes and what becomes of it.
struct FunctionRule {
  std::string_view name;  ///< small letters
  std::size_t fewest;
  std::size_t most;
  Bound (*bind)(const Call& call);
};

/// The functions by subject, one file each.
std::span<const FunctionRule> textFunctions();
std::span<const FunctionRule> numberFunctions();
std::span<const FunctionRule> dateFunctions();
std::span<const FunctionRule> systemFunctions();

/// One that isAggregate names, without OVER.
Bound bindAggregate(const Call& call);
/// Any function with OVER.
Bound bindWindowFunction(const Call& call);

}  // namespace velmora::tsql
