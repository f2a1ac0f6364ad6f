#pragma once

#include <string>

namespace velmora::settlement {

/// The suite's installation folder, with a path separator at its end:
/// VELMORA_INSTALL_PATH in the environment, else the registry's setting "InstallPath".
/// Looked up once a thread. Raises kFailed when neither is there.
std::string GetInstallFolder();

}  // namespace velmora::settlement
