#pragma once

#include <vector>

#include "velmora/com/class_table.h"

namespace velmora {

/// The component's public classes.
std::vector<com::ClassEntry> publicClasses();

}  // namespace velmora
