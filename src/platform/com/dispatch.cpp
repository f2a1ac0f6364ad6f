#include "velmora/com/dispatch.h"

#include "velmora/collections/letter_case.h"

namespace velmora::com {

std::string_view name(ArgumentType type) noexcept {
  switch (type) {
    case ArgumentType::variant:
      return "variant";
    case ArgumentType::string:
      return "string";
    case ArgumentType::boolean:
      return "boolean";
    case ArgumentType::int32:
      return "32-bit integer";
    case ArgumentType::date:
      return "date";
    case ArgumentType::object:
      return "object";
    case ArgumentType::dictionary:
      return "Dictionary";
    case ArgumentType::vector:
      return "Vector";
    case ArgumentType::recordset:
      return "Recordset";
    case ArgumentType::nothing:
      return "nothing";
  }
  return {};
}

const MethodInfo* TypeInfo::findMethod(std::string_view wanted) const noexcept {
  for (const MethodInfo& method : methods)
    if (collections::equalsIgnoringCase(method.name, wanted)) return &method;
  return nullptr;
}

}  // namespace velmora::com
