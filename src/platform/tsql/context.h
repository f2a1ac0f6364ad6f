#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/tsql/translate.h"

namespace velmora::tsql {

/// What binding one statement needs and collects.
struct Context {
  const Scope& scope;
  std::vector<DecimalFunction> functions;
  /// How often each stored table is read.
  std::map<const TableInfo*, int> tableUses;
  /// A column default is evaluated at each insert, so getdate() is not a constant there.
  bool inDefault = false;

  /// The DuckDB name of the function, remembered as needed.
  std::string require(const DecimalFunction& function);
};

}  // namespace velmora::tsql
