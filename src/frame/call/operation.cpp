#include "frame/call/operation.h"

namespace velmora {

namespace {

template <class T>
T& objectBehind(const com::Ref<T>& argument, std::string_view name, const char* expected) {
  if (argument) return *argument;
  throw com::Error(com::error::kInvalidArgument, "Velmora",
                   std::string(name) + " is nothing; a " + expected + " is expected");
}

}  // namespace

void raiseReasonOf(std::string_view operation, Place& place) {
  const auto& reason = com::GetErrorInfo();
  if (!reason)
    throw com::Error(com::error::kFailed, std::string(operation),
                     std::string(operation) + " answered nothing");
  place = reason->place;
  throw com::Error(reason->number, reason->source, reason->description);
}

collections::Dictionary& given(const collections::DictionaryRef& argument, std::string_view name) {
  return objectBehind(argument, name, "Dictionary");
}

collections::Vector& given(const collections::VectorRef& argument, std::string_view name) {
  return objectBehind(argument, name, "Vector");
}

ado::Recordset& given(const ado::RecordsetRef& argument, std::string_view name) {
  return objectBehind(argument, name, "Recordset");
}

}  // namespace velmora
