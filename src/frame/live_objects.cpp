#include "frame/live_objects.h"

#include <atomic>

namespace velmora {

namespace {

std::atomic<std::int64_t> liveObjects{0};

}  // namespace

LiveObject::LiveObject() noexcept {
  ++liveObjects;
}

LiveObject::~LiveObject() {
  --liveObjects;
}

std::int64_t LiveObject::count() noexcept {
  return liveObjects;
}

}  // namespace velmora
