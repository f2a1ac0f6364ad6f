#include "platform/com/registry_file.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "velmora/com/error.h"

namespace velmora::com {

namespace {

[[noreturn]] void throwFileError(const std::string& path, const char* action, int number) {
  throw Error(error::kFailed, "Velmora.Registry",
              "cannot " + std::string(action) + " '" + path + "': " + std::strerror(number));
}

std::string temporaryName(const std::string& path) {
  static std::atomic<int> counter = 0;
  return path + "." + std::to_string(getpid()) + "." + std::to_string(++counter);
}

bool writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return fsync(file) == 0;
}

bool writeNew(const std::string& path, std::string_view text) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (file < 0) return false;
  const bool written = writeAll(file, text);
  return close(file) == 0 && written;
}

}  // namespace

std::string readFileIfPresent(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) return {};
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (!file || !(text << file.rdbuf())) {
    // An empty file gives no character to copy, which is no failure.
    if (std::filesystem::is_empty(path, ignored)) return {};
    throwFileError(path, "read", errno);
  }
  return text.str();
}

void replaceFile(const std::string& path, std::string_view text) {
  std::error_code failure;
  const auto folder = std::filesystem::path(path).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, failure);
  const std::string temporary = temporaryName(path);
  if (writeNew(temporary, text) && rename(temporary.c_str(), path.c_str()) == 0) return;
  const int number = errno;
  unlink(temporary.c_str());
  throwFileError(path, "write", number);
}

}  // namespace velmora::com
