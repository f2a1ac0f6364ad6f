#include "checks/closing/type_names.h"

namespace velmora::closing {

std::string typeNameCase(const QueryFilter& filter, const std::string& alias,
                         std::span<const TypeName> names) {
  std::string expression = "(case";
  for (const TypeName& entry : names) {
    expression += " when " + alias + ".FType=" + std::to_string(entry.type);
    if (entry.pre) expression += " and " + alias + ".FPre=" + std::to_string(*entry.pre);
    expression += " then " + filter.literal(entry.name);
  }
  return expression + " else " + filter.literal("单据") + " end)";
}

}  // namespace velmora::closing
