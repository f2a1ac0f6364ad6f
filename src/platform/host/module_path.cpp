#include "platform/host/module_path.h"

#include <dlfcn.h>
#include <filesystem>

namespace velmora::host {

std::string platformFolder() {
  Dl_info module{};
  if (dladdr(reinterpret_cast<const void*>(&platformFolder), &module) == 0) return ".";
  return std::filesystem::absolute(module.dli_fname).parent_path().string();
}

}  // namespace velmora::host
