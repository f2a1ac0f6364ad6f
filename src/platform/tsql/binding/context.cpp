#include "platform/tsql/binding/context.h"

#include <algorithm>

namespace velmora::tsql {

std::string Context::require(const DecimalFunction& function) {
  if (std::ranges::find(functions, function) == functions.end()) functions.push_back(function);
  return function.name();
}

Scope definitionScope(const Scope& scope) {
  static const Variables none;
  return {scope.catalog, none, {}, scope.now, scope.readOnly, scope.rowCount, 0, 0, {}, {}};
}

}  // namespace velmora::tsql
