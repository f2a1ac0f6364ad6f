#include "cli/call/caller.h"

#include <algorithm>
#include <array>

#include "cli/call/json_values.h"
#include "cli/row_access.h"
#include "cli/secrets.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/class_table.h"
#include "velmora/com/context.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

using collections::Variant;
using com::ArgumentType;
using com::MethodInfo;
using com::ParameterInfo;

namespace {

constexpr std::array<std::string_view, 3> kProgIds{_clsInitBalCheck::kProgId, _clsCheck::kProgId,
                                                   _clsPublic::kProgId};

struct Request {
  std::string className, operation;
  Json arguments = Json::object();
};

std::string textMember(const Json& value, const std::string& name) {
  if (!value.is_string()) throw JsonError("\"" + name + "\" must be a text");
  return value.get<std::string>();
}

Request requestFromJson(const Json& json) {
  if (!json.is_object()) throw JsonError("a request is an object with class, operation, arguments");
  Request request;
  for (const auto& [name, value] : json.items()) {
    if (name == "class") {
      request.className = textMember(value, name);
    } else if (name == "operation") {
      request.operation = textMember(value, name);
    } else if (name == "arguments") {
      if (!value.is_object()) throw JsonError("\"arguments\" must be an object");
      request.arguments = value;
    } else {
      throw JsonError("\"" + name + "\" is unknown in a request; class, operation and arguments " +
                      "are known");
    }
  }
  if (request.className.empty()) throw JsonError("the request names no \"class\"");
  if (request.operation.empty()) throw JsonError("the request names no \"operation\"");
  return request;
}

/// "clsPublic" of "Velmora.clsPublic".
std::string_view shortName(std::string_view progId) {
  return progId.substr(progId.find('.') + 1);
}

std::string_view progIdOf(const std::string& className) {
  std::string known;
  for (const std::string_view progId : kProgIds) {
    if (collections::equalsIgnoringCase(className, progId) ||
        collections::equalsIgnoringCase(className, shortName(progId)))
      return progId;
    known.append(known.empty() ? "" : ", ").append(shortName(progId));
  }
  throw JsonError("there is no class \"" + className + "\"; the classes are " + known);
}

const MethodInfo& methodOf(const com::TypeInfo& type, const std::string& operation) {
  const MethodInfo* method = type.findMethod(operation);
  if (method == nullptr) throw JsonError(type.name + " has no operation \"" + operation + "\"");
  return *method;
}

const ParameterInfo* findParameter(const MethodInfo& method, std::string_view name) {
  const auto found = std::find_if(
      method.parameters.begin(), method.parameters.end(),
      [name](const ParameterInfo& p) { return collections::equalsIgnoringCase(p.name, name); });
  return found == method.parameters.end() ? nullptr : &*found;
}

bool isObject(ArgumentType type) {
  return type == ArgumentType::object || type == ArgumentType::dictionary ||
         type == ArgumentType::vector || type == ArgumentType::recordset;
}

/// What the caller can see after the call: by-reference and object arguments.
Json argumentsAfter(const MethodInfo& method, const std::vector<Variant>& values) {
  Json json = Json::object();
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ParameterInfo& parameter = method.parameters[i];
    if (!parameter.inOut && !isObject(parameter.type)) continue;
    try {
      json[parameter.name] = jsonFromValue(values[i]);
    } catch (JsonError& error) {
      error.within(parameter.name);
      throw;
    }
  }
  return json;
}

const char* voteText() {
  switch (com::GetObjectContext().vote()) {
    case com::Vote::complete:
      return "complete";
    case com::Vote::abort:
      return "abort";
    case com::Vote::none:
      break;
  }
  return "none";
}

Json errorJson(std::int32_t number, const std::string& source, const std::string& description) {
  Json json = Json::object();
  json["number"] = number;
  json["source"] = source;
  json["description"] = withoutPasswords(description);
  return json;
}

Json diagnosticJson(const com::ErrorInfo& info) {
  Json json = errorJson(info.number, info.source, info.description);
  if (!info.place.empty()) json["place"] = info.place;
  return json;
}

/// Runs `work`; answers what it raised, null when nothing.
template <class Work>
Json errorOf(Work work) {
  constexpr const char* kSource = "velmora call";
  try {
    work();
    return nullptr;
  } catch (const com::Error& error) {
    return errorJson(error.number(), error.source(), error.description());
  } catch (const JsonError& error) {
    return errorJson(com::error::kInvalidArgument, kSource, error.what());
  } catch (const std::exception& error) {
    return errorJson(com::error::kFailed, kSource, error.what());
  }
}

}  // namespace

com::IDispatch& Caller::objectOf(const std::string& className) {
  const std::string_view progId = progIdOf(className);
  for (const auto& object : objects_)
    if (object->GetTypeInfo().progId == progId) return *object;
  objects_.push_back(com::CreateObject(progId));
  return *objects_.back();
}

Variant Caller::absentArgument(const MethodInfo& method, const ParameterInfo& parameter) const {
  if (parameter.optional) return parameter.defaultValue;
  if (parameter.name == "sDsn" && !dsn_.empty()) return dsn_;
  // What comes back by reference may start as nothing, 0 or "".
  if (parameter.inOut) return {};
  throw JsonError(method.name + " needs the argument " + parameter.name + " (" +
                  std::string(com::name(parameter.type)) + ")");
}

std::vector<Variant> Caller::argumentsOf(const MethodInfo& method, const Json& given) {
  std::vector<const Json*> byPosition(method.parameters.size());
  for (const auto& [name, value] : given.items()) {
    const ParameterInfo* parameter = findParameter(method, name);
    if (parameter == nullptr) throw JsonError(method.name + " has no argument \"" + name + "\"");
    const Json*& place = byPosition[static_cast<std::size_t>(parameter - method.parameters.data())];
    if (place != nullptr) throw JsonError("\"" + name + "\" occurs twice");
    place = &value;
  }
  std::vector<Variant> values;
  for (std::size_t i = 0; i < byPosition.size(); ++i) {
    const ParameterInfo& parameter = method.parameters[i];
    try {
      if (byPosition[i] == nullptr) {
        values.push_back(absentArgument(method, parameter));
      } else if (byPosition[i]->is_null()) {
        values.emplace_back();
      } else {
        values.push_back(valueFromJson(*byPosition[i]));
      }
    } catch (JsonError& error) {
      if (byPosition[i] != nullptr) error.within(parameter.name);
      throw;
    }
  }
  return values;
}

/// What the operation answers. When it could not decide which rows the user may see, the
/// arguments that it filled go, too.
Variant Caller::invoke(com::IDispatch& object, const MethodInfo& method,
                       std::vector<Variant>& values) const {
  Variant result = object.Invoke(method.name, values);
  if (!withoutRowAccess_ && undecidedRowAccess()) {
    values.clear();
    requireRowAccess();
  }
  return result;
}

Caller::Answer Caller::answer(std::string_view request) {
  com::GetObjectContext().reset();
  com::ClearErrorInfo();
  const MethodInfo* method = nullptr;
  std::vector<Variant> values;
  Json result, arguments = Json::object();
  Json error = errorOf([&] {
    const Request parsed = requestFromJson(parseJson(request));
    com::IDispatch& object = objectOf(parsed.className);
    method = &methodOf(object.GetTypeInfo(), parsed.operation);
    values = argumentsOf(*method, parsed.arguments);
    result = jsonFromValue(invoke(object, *method, values));
  });
  if (const Json unwritable = errorOf([&] {
        if (method != nullptr) arguments = argumentsAfter(*method, values);
      });
      error.is_null())
    error = unwritable;
  Answer answer;
  answer.ran = error.is_null();
  answer.json["result"] = std::move(result);
  answer.json["arguments"] = std::move(arguments);
  answer.json["vote"] = voteText();
  answer.json["error"] = std::move(error);
  if (const auto& info = com::GetErrorInfo(); info && answer.ran)
    answer.json["diagnostic"] = diagnosticJson(*info);
  return answer;
}

}  // namespace velmora::cli
