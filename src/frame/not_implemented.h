#pragma once

#include <string>

#include "velmora/com/error.h"

namespace velmora {

/// What an operation raises that this version does not offer yet.
[[noreturn]] inline void raiseNotImplemented(const char* className, const char* operation) {
  throw com::Error(com::error::kNotImplemented, className,
                   std::string(operation) + " is not implemented yet");
}

}  // namespace velmora
