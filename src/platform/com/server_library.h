#pragma once

#include <string>

#include "velmora/com/class_table.h"

namespace velmora::com {

/// A loaded in-process server. It stays loaded until the process ends, because
/// its objects may outlive every reference to this.
class ServerLibrary {
 public:
  /// Raises std::runtime_error with the loader's reason.
  explicit ServerLibrary(const std::string& path);

  /// An object of the class. Raises std::runtime_error when the library is no
  /// server or does not serve the class, and what the factory raises.
  Ref<IDispatch> createInstance(const Guid& classId) const;
  /// Has the server write its classes into the registry.
  void registerClasses() const;

 private:
  template <class Function>
  Function entryPoint(const char* name) const;

  std::string path_;
  void* handle_;
};

}  // namespace velmora::com
