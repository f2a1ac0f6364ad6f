#include "platform/tsql/binding/context.h"

#include <algorithm>

namespace velmora::tsql {

std::string Context::require(const DecimalFunction& function) {
  if (std::ranges::find(functions, function) == functions.end()) functions.push_back(function);
  return function.name();
}

}  // namespace velmora::tsql
