#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/names/name_rules.h"

namespace velmora::tsql {

/// SELECT @a = ..., @b = ...: the assignments happen one after the other and row after row,
/// and an expression that reads an assigned variable sees what was assigned last.
struct Accumulation {
  /// The variables an expression must not take as they were before the statement.
  std::set<std::string, IgnoreCase> pending;
  /// The expressions are bound as steps over a row's inputs, `x`, and the variables, `s`.
  bool stepwise = false;
  /// What the steps need of a row.
  std::vector<OutputValue> inputs;

  /// The value as a step reads it.
  Bound input(const Bound& value, Position position);
  /// How a step names the variable.
  static std::string variableSql(std::string_view name);
};

/// While it lives, expressions are bound as those of a row again.
class WithinInput {
 public:
  explicit WithinInput(Accumulation* steps) : steps_(steps), before_(steps && steps->stepwise) {
    if (steps_ != nullptr) steps_->stepwise = false;
  }
  ~WithinInput() {
    if (steps_ != nullptr) steps_->stepwise = before_;
  }
  WithinInput(const WithinInput&) = delete;
  WithinInput& operator=(const WithinInput&) = delete;

 private:
  Accumulation* steps_;
  bool before_;
};

}  // namespace velmora::tsql
