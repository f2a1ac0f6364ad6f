#pragma once

#include <string>

#include "cli/failure.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"

namespace velmora::cli {

/// Path of the component's library: VELMORA_COMPONENT in the environment, else the
/// one installed or built beside this program. Raises Failure naming where it looked.
std::string componentLibrary();

/// Makes the component's classes available to this process, whatever is registered.
void activateComponent();

/// A new object of the component's class `Interface`. Raises Failure when another class
/// goes by its name.
template <class Interface>
com::Ref<Interface> componentObject() {
  auto object = com::CreateObject(Interface::kProgId).template as<Interface>();
  if (!object) throw Failure(std::string(Interface::kProgId) + " is another program's class");
  return object;
}

/// Raises Failure that tells why `operation`, which only reads, failed. A lost connection is
/// told on one line.
[[noreturn]] void fail(const std::string& operation, const com::ErrorInfo& reason);
/// Raises Failure that tells why `operation` answered that it failed.
[[noreturn]] void failFromErrorInfo(const std::string& operation);

}  // namespace velmora::cli
