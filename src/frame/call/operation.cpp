#include "frame/call/operation.h"

namespace velmora {

void raiseReasonOf(std::string_view operation, Place& place) {
  const auto& reason = com::GetErrorInfo();
  if (!reason)
    throw com::Error(com::error::kFailed, std::string(operation),
                     std::string(operation) + " answered nothing");
  place = reason->place;
  throw com::Error(reason->number, reason->source, reason->description);
}

collections::Dictionary& given(const collections::DictionaryRef& argument, std::string_view name) {
  if (!argument)
    throw com::Error(com::error::kInvalidArgument, "Velmora",
                     std::string(name) + " is nothing; a Dictionary is expected");
  return *argument;
}

}  // namespace velmora
