#pragma once

#include <string_view>

#include "velmora/collections/variant.h"

namespace velmora::com {

/// A value of the calling thread, by name; Empty at first, gone with the thread. A server
/// library keeps its module-level state here: with thread-local objects of its own it could
/// not be unloaded before the thread ends.
collections::Variant& ThreadValue(std::string_view name);

}  // namespace velmora::com
