#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/tsql/translate.h"

namespace velmora::tsql {

/// What binding one statement needs and collects.
struct Context {
  explicit Context(const Scope& seen) : scope(seen) {}

  const Scope& scope;
  std::vector<DecimalFunction> functions;
  /// How often each stored table is read.
  std::map<const TableInfo*, int> tableUses;
  /// How many of these uses are over before the first row of the statement comes.
  std::map<const TableInfo*, int> settledUses;
  /// A column default is evaluated at each insert, so getdate() is not a constant there.
  bool inDefault = false;

  /// The DuckDB name of the function, remembered as needed.
  std::string require(const DecimalFunction& function);
};

}  // namespace velmora::tsql
