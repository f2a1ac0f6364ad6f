#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "velmora/com/dispatch.h"

namespace velmora::com {

/// A class that can be created by ProgID in this process; without `create` the
/// ProgID is unknown, whatever the registry says.
struct ClassEntry {
  std::string progId;
  Guid classId;
  std::function<Ref<IDispatch>()> create;
};

/// Makes a class known to this process, in place of one registered under the
/// same ProgID before (letter case ignored). Thread-safe.
void RegisterClass(ClassEntry entry);

/// Registers a class for the life of this object and then puts back what stood
/// under its ProgID before; how tests replace a sibling component. Scopes of one
/// ProgID must nest.
class ScopedClass {
 public:
  explicit ScopedClass(ClassEntry entry);
  /// Makes `progId` unknown for the life of this object.
  static ScopedClass hidden(std::string progId);
  ~ScopedClass();
  ScopedClass(const ScopedClass&) = delete;
  ScopedClass& operator=(const ScopedClass&) = delete;

 private:
  std::string progId_;
  std::optional<ClassEntry> previous_;
};

/// A new object of the class with this ProgID: first from this process's table,
/// else from the library that the registry names for it (loaded when needed).
/// Raises kCannotCreateObject naming the ProgID and why.
Ref<IDispatch> CreateObject(std::string_view progId);

/// Loads the in-process server `libraryPath` and makes its classes known to this
/// process only, whatever the registry files say. Raises kCannotCreateObject
/// naming the library when it cannot be loaded or is no server.
void ActivateServer(const std::string& libraryPath);

/// HRESULT-like answers of the entry points.
inline constexpr std::int32_t kOk = 0;
inline constexpr std::int32_t kFalse = 1;

/// What DllGetClassObject hands out: makes objects of one class.
class IClassFactory : public IUnknown {
 public:
  static constexpr Guid kInterfaceId = Guid::parse("00000001-0000-0000-C000-000000000046");
  virtual Ref<IDispatch> CreateInstance() = 0;

 protected:
  ~IClassFactory() = default;
};

/// The four entry points of an in-process server, as C symbols. They answer kOk,
/// kFalse (DllCanUnloadNow: no) or an error number, and never throw.
/// DllRegisterServer puts the server's classes into the registry (in its
/// writeLayer). DllGetClassObject writes a counted reference to `*object`, to be
/// cast to the interface that `interfaceId` names.
using DllRegisterServerFunction = std::int32_t (*)();
using DllUnregisterServerFunction = std::int32_t (*)();
using DllCanUnloadNowFunction = std::int32_t (*)();
using DllGetClassObjectFunction = std::int32_t (*)(const Guid& classId, const Guid& interfaceId,
                                                   void** object);

/// Absolute path of the library or program that holds `address`, a function or a
/// static object; what a server registers itself under. Raises kFailed.
std::string LibraryOf(const void* address);

}  // namespace velmora::com
