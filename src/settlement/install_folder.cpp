#include "settlement/install_folder.h"

#include <cstdlib>

#include "velmora/com/error.h"
#include "velmora/com/registry.h"

namespace velmora::settlement {

namespace {

std::string configuredFolder() {
  if (const char* path = std::getenv("VELMORA_INSTALL_PATH"); path != nullptr && *path != '\0')
    return path;
  if (auto path = com::Registry::setting("InstallPath"); path && !path->empty())
    return *std::move(path);
  throw com::Error(com::error::kFailed, "clsPublic",
                   "there is no installation folder; set VELMORA_INSTALL_PATH or the registry's "
                   "setting InstallPath");
}

}  // namespace

const std::string& GetInstallFolder() {
  thread_local std::string folder;
  if (!folder.empty()) return folder;
  folder = configuredFolder();
  if (!folder.ends_with('/')) folder += '/';
  return folder;
}

}  // namespace velmora::settlement
