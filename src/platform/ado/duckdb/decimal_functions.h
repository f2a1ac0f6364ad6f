#pragma once

#include <optional>
#include <set>
#include <string>

#include "platform/ado/duckdb/engine.h"
#include "platform/tsql/engine/engine_functions.h"
#include "velmora/collections/decimal.h"

namespace velmora::ado::embedded {

/// The function's result for two coefficients: a quotient cut towards zero, any other rounded
/// half away from zero, at the function's result scale. nullopt beyond 38 digits or the range.
/// A divisor must not be zero.
std::optional<collections::int128> exactResult(const tsql::DecimalFunction& function,
                                               collections::int128 left, collections::int128 right);

/// The decimal functions that one session has made known to its engine.
class DecimalFunctions {
 public:
  explicit DecimalFunctions(Session& session) : session_(session) {}

  /// Makes the function known, unless it is. Works on a read-only database too.
  void require(const tsql::DecimalFunction& function);
  /// After a rollback, which takes back functions made known in the transaction.
  void forget() { known_.clear(); }

 private:
  Session& session_;
  std::set<std::string> known_;
};

}  // namespace velmora::ado::embedded
