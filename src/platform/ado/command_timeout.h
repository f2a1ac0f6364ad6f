#pragma once

#include <string>

#include "velmora/com/error.h"

namespace velmora::ado {

/// Raises kAdoInvalidArgument for a negative number; `source` is the class that was given it.
inline void requireTimeout(int seconds, const char* source) {
  if (seconds < 0)
    throw com::Error(com::error::kAdoInvalidArgument, source,
                     "CommandTimeout cannot be " + std::to_string(seconds) +
                         "; expected a number of seconds, 0 without limit");
}

}  // namespace velmora::ado
