#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "velmora/collections/variant.h"
#include "velmora/com/unknown.h"

namespace velmora::com {

using collections::Variant;

/// What a late-bound argument or result is declared as.
enum class ArgumentType {
  variant,  ///< any value
  string,
  boolean,
  int32,
  date,
  object,  ///< any object
  dictionary,
  vector,
  recordset,
  nothing,  ///< result only: the method returns no value
};

/// Name as the catalogue shows it, for instance "Dictionary".
std::string_view name(ArgumentType type) noexcept;

struct ParameterInfo {
  std::string name;
  ArgumentType type = ArgumentType::variant;
  bool inOut = false;
  bool optional = false;
  Variant defaultValue;  ///< of an optional parameter
};

struct MethodInfo {
  std::string name;
  std::vector<ParameterInfo> parameters;
  ArgumentType result = ArgumentType::nothing;
};

/// What a class offers to late binding, methods in slot order.
struct TypeInfo {
  std::string name;    ///< "clsPublic"
  std::string progId;  ///< "Velmora.clsPublic"
  Guid classId;
  Guid interfaceId;
  std::vector<MethodInfo> methods;

  /// nullptr when there is no such method; letter case is ignored.
  const MethodInfo* findMethod(std::string_view name) const noexcept;
};

/// Late binding: members by name, letter case ignored.
class IDispatch : public IUnknown {
 public:
  static constexpr Guid kInterfaceId = Guid::parse("00020400-0000-0000-C000-000000000046");

  virtual const TypeInfo& GetTypeInfo() const noexcept = 0;

  /// Calls the method `name`. Arguments are by position; trailing optional ones
  /// may be left out. By-reference arguments are replaced in `arguments`.
  /// Raises kUnknownName, kBadParameterCount or kTypeMismatch (kOverflow and
  /// kInvalidUseOfNull for a value that does not fit) naming class, member and
  /// argument; whatever the method itself raises passes through and leaves
  /// `arguments` as they were.
  virtual Variant Invoke(std::string_view name, std::span<Variant> arguments) = 0;

  /// A property by name. Raise kUnknownName when there is none, kNotImplemented
  /// when it cannot be read or written.
  virtual Variant GetProperty(std::string_view name) = 0;
  virtual void PutProperty(std::string_view name, const Variant& value) = 0;

 protected:
  ~IDispatch() = default;
};

/// Invoke with the arguments written in place; by-reference results are dropped.
template <class... Arguments>
Variant call(IDispatch& object, std::string_view name, Arguments&&... arguments) {
  std::vector<Variant> values{Variant(std::forward<Arguments>(arguments))...};
  return object.Invoke(name, values);
}

}  // namespace velmora::com
