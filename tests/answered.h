#pragma once

// What a test goes on with: where it is missing the test fails, telling why, and the next
// one runs.

#include <stdexcept>
#include <string>

#include "velmora/com/error.h"
#include "velmora/com/unknown.h"

namespace velmora {

/// The reason that the last operation left.
inline const com::ErrorInfo& reason() {
  if (const auto& info = com::GetErrorInfo()) return *info;
  throw std::logic_error("the operation left no reason");
}

/// The object that an operation answered.
template <class T>
com::Ref<T> answered(com::Ref<T> object) {
  if (object) return object;
  throw std::logic_error("nothing was answered: " + reason().place + ": " + reason().description);
}

}  // namespace velmora
