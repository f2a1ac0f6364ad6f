#include "velmora/com/thread_value.h"

#include <functional>
#include <map>
#include <string>

namespace velmora::com {

collections::Variant& ThreadValue(std::string_view name) {
  thread_local std::map<std::string, collections::Variant, std::less<>> values;
  const auto found = values.find(name);
  return found != values.end() ? found->second : values[std::string(name)];
}

}  // namespace velmora::com
