#pragma once

#include <string>

#include "velmora/com/error.h"

namespace velmora::cli {

/// Path of the component's library: VELMORA_COMPONENT in the environment, else the
/// one installed or built beside this program. Raises Failure naming where it looked.
std::string componentLibrary();

/// Makes the component's classes available to this process, whatever is registered.
void activateComponent();

/// Raises Failure that tells why `operation` answered that it failed.
[[noreturn]] void failFromErrorInfo(const std::string& operation);

}  // namespace velmora::cli
