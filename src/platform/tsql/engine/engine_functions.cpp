#include "platform/tsql/engine/engine_functions.h"

#include <array>

namespace velmora::tsql {

std::string DecimalFunction::name() const {
  static constexpr std::array<std::string_view, 7> names{"mul", "div",   "add",       "sub",
                                                         "mod", "money", "smallmoney"};
  return "velmora_" + std::string(names[static_cast<std::size_t>(operation)]) + "_" +
         std::to_string(leftScale) + "_" + std::to_string(rightScale) + "_" +
         std::to_string(resultScale);
}

}  // namespace velmora::tsql
