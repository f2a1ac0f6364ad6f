#pragma once

#include <functional>
#include <stdexcept>

#include "velmora/com/error.h"

namespace velmora {

/// The error that `action` raises; fails the test when it raises none.
inline com::Error errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const com::Error& error) {
    return error;
  }
  throw std::logic_error("no error was raised");
}

}  // namespace velmora
