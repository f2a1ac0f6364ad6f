#pragma once

#include <string>

namespace velmora::host {

/// Folder of the loaded platform library, without a slash at its end.
std::string platformFolder();

}  // namespace velmora::host
