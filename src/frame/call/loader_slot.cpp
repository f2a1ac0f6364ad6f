#include "frame/call/loader_slot.h"

namespace velmora {

com::Ref<com::IDispatch>& messageLoaderSlot() noexcept {
  thread_local com::Ref<com::IDispatch> slot;
  return slot;
}

void unloadMessageLoader() noexcept {
  const com::Ref<com::IDispatch> loader = std::move(messageLoaderSlot());
  messageLoaderSlot() = nullptr;
  if (!loader) return;
  try {
    com::call(*loader, "Unload");
  } catch (...) {
    // A loader that cannot unload must not stop the call that is ending.
  }
}

}  // namespace velmora
