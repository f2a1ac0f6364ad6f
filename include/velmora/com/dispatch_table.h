#pragma once

// Late binding from typed member functions: a class lists its methods once, with
// the argument names of the catalogue, and gets its type information and Invoke
// from the C++ signatures. Late-bound and typed calls thereby run the same code.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "velmora/collections/letter_case.h"
#include "velmora/com/dispatch.h"
#include "velmora/com/error.h"

namespace velmora::collections {
class Dictionary;
class Vector;
}  // namespace velmora::collections
namespace velmora::ado {
class Recordset;
}

namespace velmora::com {

/// How a C++ argument type is declared to late binding and read from a Variant.
/// `read` raises kTypeMismatch (without naming the member; the caller adds that).
template <class T>
struct ArgumentTraits;

#define VELMORA_VALUE_ARGUMENT(Type, declared, reader)                \
  template <>                                                         \
  struct ArgumentTraits<Type> {                                       \
    static constexpr ArgumentType kType = ArgumentType::declared;     \
    static Type read(const Variant& value) { return value.reader(); } \
  };
VELMORA_VALUE_ARGUMENT(bool, boolean, toBool)
VELMORA_VALUE_ARGUMENT(std::int32_t, int32, toInt32)
VELMORA_VALUE_ARGUMENT(std::string, string, toText)
VELMORA_VALUE_ARGUMENT(collections::Date, date, toDate)
#undef VELMORA_VALUE_ARGUMENT

template <>
struct ArgumentTraits<Variant> {
  static constexpr ArgumentType kType = ArgumentType::variant;
  static Variant read(const Variant& value) { return value; }
};
template <class T>
struct ArgumentTraits<Ref<T>> {
  static constexpr ArgumentType kType =
      std::is_same_v<T, collections::Dictionary> ? ArgumentType::dictionary
      : std::is_same_v<T, collections::Vector>   ? ArgumentType::vector
      : std::is_same_v<T, ado::Recordset>        ? ArgumentType::recordset
                                                 : ArgumentType::object;
  static Ref<T> read(const Variant& value) {
    if constexpr (std::is_same_v<T, IUnknown>) {
      return value.toObject();
    } else {
      return value.template toObject<T>();
    }
  }
};

/// Name of a parameter and, for a trailing optional one, its default.
struct Parameter {
  std::string name;
  bool optional = false;
  Variant defaultValue;

  Parameter(const char* parameterName) : name(parameterName) {}  // NOLINT: implicit by design
  Parameter(const char* parameterName, Variant fallback)
      : name(parameterName), optional(true), defaultValue(std::move(fallback)) {}
};

/// The methods and properties of class `T` by name. Built once:
///
///   static const auto table = DispatchTable<clsPublic>("clsPublic", ...)
///       .method("GetData", &clsPublic::GetData, {"sDsn", "sSql"})
///       .method(...);
///
/// A single optional parameter is written Parameter("lClassTypeID", 0).
template <class T>
class DispatchTable {
 public:
  DispatchTable(std::string className, std::string progId, Guid classId, Guid interfaceId)
      : info_{std::move(className), std::move(progId), classId, interfaceId, {}} {}

  /// Adds a method. One Parameter per argument of `function`; an argument of
  /// type U& (not const) is by reference.
  template <class Base, class Result, class... Arguments>
  DispatchTable& method(const char* methodName, Result (Base::*function)(Arguments...),
                        std::array<Parameter, sizeof...(Arguments)> parameters) {
    info_.methods.push_back(describe<Result, Arguments...>(methodName, parameters));
    calls_.push_back([function](const TypeInfo& type, const MethodInfo& called, T& object,
                                std::span<Variant> arguments) {
      return callMember(type, called, object, function, arguments,
                        std::index_sequence_for<Arguments...>());
    });
    return *this;
  }
  DispatchTable& property(const char* propertyName, std::function<Variant(T&)> get,
                          std::function<void(T&, const Variant&)> put) {
    properties_.push_back({propertyName, std::move(get), std::move(put)});
    return *this;
  }

  const TypeInfo& info() const noexcept { return info_; }

  Variant invoke(T& object, std::string_view methodName, std::span<Variant> arguments) const {
    const MethodInfo* method = info_.findMethod(methodName);
    if (method == nullptr) throwUnknownMember(methodName);
    const auto& callMethod = calls_[static_cast<std::size_t>(method - info_.methods.data())];
    return callMethod(info_, *method, object, arguments);
  }
  Variant get(T& object, std::string_view propertyName) const {
    const auto& found = findProperty(propertyName);
    if (!found.get) throwNoAccess(propertyName, "read");
    return found.get(object);
  }
  void put(T& object, std::string_view propertyName, const Variant& value) const {
    const auto& found = findProperty(propertyName);
    if (!found.put) throwNoAccess(propertyName, "written");
    found.put(object, value);
  }

 private:
  struct Property {
    std::string name;
    std::function<Variant(T&)> get;
    std::function<void(T&, const Variant&)> put;
  };

  template <class Argument>
  static constexpr bool kInOut =
      std::is_lvalue_reference_v<Argument> && !std::is_const_v<std::remove_reference_t<Argument>>;

  template <class Argument>
  static ParameterInfo describeParameter(const Parameter& parameter) {
    return {parameter.name, ArgumentTraits<std::remove_cvref_t<Argument>>::kType, kInOut<Argument>,
            parameter.optional, parameter.defaultValue};
  }
  template <class Result, class... Arguments, std::size_t N>
  static MethodInfo describe(const char* methodName, const std::array<Parameter, N>& parameters) {
    MethodInfo method;
    method.name = methodName;
    if constexpr (!std::is_void_v<Result>)
      method.result = ArgumentTraits<std::remove_cvref_t<Result>>::kType;
    [[maybe_unused]] std::size_t i = 0;
    (method.parameters.push_back(describeParameter<Arguments>(parameters[i++])), ...);
    return method;
  }

  template <class Base, class Result, class... Arguments, std::size_t... I>
  static Variant callMember(const TypeInfo& type, const MethodInfo& method, T& object,
                            Result (Base::*function)(Arguments...), std::span<Variant> arguments,
                            std::index_sequence<I...>);

  template <class Value>
  static Value readArgument(const TypeInfo& type, const MethodInfo& method, std::size_t index,
                            std::span<const Variant> arguments);

  const Property& findProperty(std::string_view propertyName) const;
  [[noreturn]] void throwUnknownMember(std::string_view member) const;
  [[noreturn]] void throwNoAccess(std::string_view member, std::string_view how) const;

  TypeInfo info_;
  using Call = std::function<Variant(const TypeInfo&, const MethodInfo&, T&, std::span<Variant>)>;
  std::vector<Call> calls_;  // in the order of info_.methods
  std::vector<Property> properties_;
};

namespace detail {
[[noreturn]] void throwUnknownMember(const TypeInfo& type, std::string_view member);
[[noreturn]] void throwNoAccess(const TypeInfo& type, std::string_view member,
                                std::string_view how);
[[noreturn]] void throwArgument(const TypeInfo& type, const MethodInfo& method, std::size_t index,
                                const Variant& given, const Error& reason);
/// Checks the number of arguments given: all but trailing optional ones.
void checkParameterCount(const TypeInfo& type, const MethodInfo& method, std::size_t given);
}  // namespace detail

template <class T>
template <class Value>
Value DispatchTable<T>::readArgument(const TypeInfo& type, const MethodInfo& method,
                                     std::size_t index, std::span<const Variant> arguments) {
  const Variant& given =
      index < arguments.size() ? arguments[index] : method.parameters[index].defaultValue;
  try {
    return ArgumentTraits<Value>::read(given);
  } catch (const Error& reason) {
    detail::throwArgument(type, method, index, given, reason);
  }
}

template <class T>
template <class Base, class Result, class... Arguments, std::size_t... I>
Variant DispatchTable<T>::callMember(const TypeInfo& type, const MethodInfo& method, T& object,
                                     Result (Base::*function)(Arguments...),
                                     std::span<Variant> arguments, std::index_sequence<I...>) {
  detail::checkParameterCount(type, method, arguments.size());
  std::tuple<std::remove_cvref_t<Arguments>...> values{
      readArgument<std::remove_cvref_t<Arguments>>(type, method, I, arguments)...};
  const auto giveBack = [&] {
    ((kInOut<Arguments> && I < arguments.size() ? void(arguments[I] = Variant(std::get<I>(values)))
                                                : void()),
     ...);
  };
  if constexpr (std::is_void_v<Result>) {
    (object.*function)(std::get<I>(values)...);
    giveBack();
    return {};
  } else {
    Variant result((object.*function)(std::get<I>(values)...));
    giveBack();
    return result;
  }
}

template <class T>
const typename DispatchTable<T>::Property& DispatchTable<T>::findProperty(
    std::string_view propertyName) const {
  for (const Property& property : properties_)
    if (collections::equalsIgnoringCase(property.name, propertyName)) return property;
  throwUnknownMember(propertyName);
}
template <class T>
void DispatchTable<T>::throwUnknownMember(std::string_view member) const {
  detail::throwUnknownMember(info_, member);
}
template <class T>
void DispatchTable<T>::throwNoAccess(std::string_view member, std::string_view how) const {
  detail::throwNoAccess(info_, member, how);
}

/// Base of a late-bound class: `Self` derives from DispatchObject<Self, Interface>
/// and has a static function `const DispatchTable<Self>& dispatchTable()`.
/// `Interface` derives from IDispatch and has `using Base = IDispatch` (or is
/// IDispatch itself).
template <class Self, class Interface = IDispatch>
class DispatchObject : public Object<Interface> {
 public:
  const TypeInfo& GetTypeInfo() const noexcept override { return Self::dispatchTable().info(); }
  Variant Invoke(std::string_view name, std::span<Variant> arguments) override {
    return Self::dispatchTable().invoke(self(), name, arguments);
  }
  Variant GetProperty(std::string_view name) override {
    return Self::dispatchTable().get(self(), name);
  }
  void PutProperty(std::string_view name, const Variant& value) override {
    Self::dispatchTable().put(self(), name, value);
  }

 private:
  Self& self() noexcept { return static_cast<Self&>(*this); }
};

}  // namespace velmora::com
