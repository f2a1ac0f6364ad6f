#pragma once

#include "velmora/com/dispatch.h"

namespace velmora {

/// This thread's message loader: the one that the last message look-up created, or
/// nothing.
com::Ref<com::IDispatch> messageLoader();
void keepMessageLoader(const com::Ref<com::IDispatch>& loader);

/// Tells this thread's message loader, if any, to unload its resource files (a
/// failure is ignored) and empties the slot. The thread's error information stays.
void unloadMessageLoader() noexcept;

}  // namespace velmora
