#include "frame/call/loader_slot.h"

#include "frame/call/kept_error_info.h"
#include "velmora/com/thread_value.h"

namespace velmora {

namespace {

constexpr const char* kSlot = "message loader";

}  // namespace

com::Ref<com::IDispatch> messageLoader() {
  return com::ThreadValue(kSlot).toObject<com::IDispatch>();
}

void keepMessageLoader(const com::Ref<com::IDispatch>& loader) {
  com::ThreadValue(kSlot) = loader;
}

void unloadMessageLoader() noexcept {
  try {
    const KeptErrorInfo kept;
    const auto loader = messageLoader();
    com::ThreadValue(kSlot) = {};
    if (loader) com::call(*loader, "Unload");
  } catch (...) {
    // A loader that cannot unload must not stop the call that is ending.
  }
}

}  // namespace velmora
