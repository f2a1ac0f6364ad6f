#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "velmora/com/registry.h"

namespace velmora::com {

/// Puts the user's registry into a folder of its own for the life of this object.
class TemporaryRegistry {
 public:
  TemporaryRegistry() {
    std::string folder = std::filesystem::temp_directory_path() / "registry.XXXXXX";
    folder_ = mkdtemp(folder.data());
    setenv("VELMORA_REGISTRY", path().c_str(), 1);
  }
  ~TemporaryRegistry() {
    unsetenv("VELMORA_REGISTRY");
    std::filesystem::remove_all(folder_);
  }
  TemporaryRegistry(const TemporaryRegistry&) = delete;
  TemporaryRegistry& operator=(const TemporaryRegistry&) = delete;

  const std::string& folder() const { return folder_; }
  std::string path() const { return folder_ + "/made/when/needed/registry"; }
  void write(std::string_view text) const {
    std::filesystem::create_directories(std::filesystem::path(path()).parent_path());
    std::ofstream(path()) << text;
  }
  std::string text() const {
    std::ostringstream text;
    text << std::ifstream(path()).rdbuf();
    return text.str();
  }

 private:
  std::string folder_;
};

}  // namespace velmora::com
