#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "velmora/com/guid.h"

namespace velmora::com {

/// What the registry says of one class.
struct RegisteredClass {
  std::string progId;
  Guid classId;
  std::string library;  ///< absolute path of the in-process server
};

/// The registry: which library serves which ProgID, and named settings such as
/// the installation folder.
///
/// Three layers, asked in this order: this process (memory), the user's file
/// ($VELMORA_REGISTRY, else $XDG_CONFIG_HOME/velmora/registry, else
/// ~/.config/velmora/registry) and the system's (/etc/velmora/registry). The
/// files are text: "[classes]" lines "ProgID = {class id} library" and
/// "[settings]" lines "name = value". Writing replaces the file in one step
/// (temporary file and rename). Raises com::Error naming the file and line.
class Registry {
 public:
  enum class Layer { process, user, system };

  static std::optional<RegisteredClass> findClass(std::string_view progId);
  static std::vector<RegisteredClass> classes(Layer layer);
  /// Adds or replaces, in the layer that `writeLayer` names.
  static void putClass(const RegisteredClass& entry);
  /// Absent is not an error.
  static void removeClass(std::string_view progId);

  static std::optional<std::string> setting(std::string_view name);
  static void putSetting(std::string_view name, std::string_view value);

  /// Where this thread's put... and removeClass go: the user's layer at first.
  static Layer writeLayer() noexcept;
  static void setWriteLayer(Layer layer) noexcept;
  /// Path of the file behind a layer; empty for the process layer.
  static std::string file(Layer layer);
};

}  // namespace velmora::com
