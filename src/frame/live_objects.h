#pragma once

#include <cstdint>

namespace velmora {

/// Held by every object that this component hands out, so that the component can tell
/// whether it may be unloaded.
class LiveObject {
 public:
  LiveObject() noexcept;
  ~LiveObject();
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;

  /// How many there are, over all threads.
  static std::int64_t count() noexcept;
};

}  // namespace velmora
