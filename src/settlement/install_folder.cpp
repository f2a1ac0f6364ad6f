#include "settlement/install_folder.h"

#include <cstdlib>

#include "velmora/com/error.h"
#include "velmora/com/registry.h"
#include "velmora/com/thread_value.h"

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

std::string GetInstallFolder() {
  auto& kept = com::ThreadValue("installation folder");
  if (kept.isEmpty()) {
    std::string folder = configuredFolder();
    if (!folder.ends_with('/')) folder += '/';
    kept = folder;
  }
  return std::string(kept.text());
}

}  // namespace velmora::settlement
