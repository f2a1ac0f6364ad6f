#include "velmora/com/dispatch_table.h"

#include <algorithm>

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora::com::detail {

namespace {

std::string qualified(const TypeInfo& type, std::string_view member) {
  return type.name + "." + std::string(member);
}

bool isObject(ArgumentType type) {
  return type == ArgumentType::object || type == ArgumentType::dictionary ||
         type == ArgumentType::vector || type == ArgumentType::recordset;
}

std::string kindOf(IUnknown& object) {
  const Ref<IUnknown> reference(&object);
  if (reference.as<collections::Dictionary>()) return "Dictionary";
  if (reference.as<collections::Vector>()) return "Vector";
  if (reference.as<ado::Recordset>()) return "Recordset";
  if (const auto dispatch = reference.as<IDispatch>()) return dispatch->GetTypeInfo().name;
  return "another object";
}

std::string kindOf(const Variant& value) {
  if (value.type() != collections::VarType::object) return std::string(name(value.type()));
  const auto object = value.toObject();
  return object ? kindOf(*object) : "nothing";
}

std::string countText(std::size_t least, std::size_t most) {
  return least == most ? std::to_string(most)
                       : std::to_string(least) + " to " + std::to_string(most);
}

}  // namespace

void throwUnknownMember(const TypeInfo& type, std::string_view member) {
  throw Error(error::kUnknownName, type.progId,
              type.name + " has no member '" + std::string(member) + "'");
}

void throwNoAccess(const TypeInfo& type, std::string_view member, std::string_view how) {
  throw Error(error::kNotImplemented, type.progId,
              qualified(type, member) + " cannot be " + std::string(how));
}

void checkParameterCount(const TypeInfo& type, const MethodInfo& method, std::size_t given) {
  const auto& parameters = method.parameters;
  const auto lastRequired = std::find_if(parameters.rbegin(), parameters.rend(),
                                         [](const ParameterInfo& p) { return !p.optional; });
  const auto least = static_cast<std::size_t>(parameters.rend() - lastRequired);
  if (given >= least && given <= parameters.size()) return;
  throw Error(error::kBadParameterCount, type.progId,
              qualified(type, method.name) + ": " + std::to_string(given) +
                  " arguments given, expected " + countText(least, parameters.size()));
}

void throwArgument(const TypeInfo& type, const MethodInfo& method, std::size_t index,
                   const Variant& given, const Error& reason) {
  const ParameterInfo& parameter = method.parameters[index];
  const std::string argument = qualified(type, method.name) + ": argument " +
                               std::to_string(index + 1) + " (" + parameter.name + ")";
  const bool objects = given.type() == collections::VarType::object || isObject(parameter.type);
  if (reason.number() == error::kTypeMismatch && objects)
    throw Error(
        reason.number(), type.progId,
        argument + " is " + kindOf(given) + ", expected " + std::string(name(parameter.type)));
  throw Error(reason.number(), type.progId, argument + ": " + reason.description());
}

}  // namespace velmora::com::detail
