#include "cli/new_file.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>

#include "cli/failure.h"

namespace velmora::cli {

namespace fs = std::filesystem;

namespace {

std::mutex mutex;
std::string abandoned;  // name of the file in the making, for std::quick_exit

void removeFiles(const std::string& unfinished) noexcept {
  std::error_code ignored;
  // The database's log of changes goes with it.
  for (const char* ending : {"", ".wal"}) fs::remove(unfinished + ending, ignored);
}

void setAbandoned(const std::string& unfinished) {
  static std::once_flag registered;
  std::call_once(registered, [] {
    static_cast<void>(std::at_quick_exit([] {
      const std::lock_guard lock(mutex);
      if (!abandoned.empty()) removeFiles(abandoned);
    }));
  });
  const std::lock_guard lock(mutex);
  abandoned = unfinished;
}

}  // namespace

NewFile::NewFile(std::string file, bool replace)
    : file_(std::move(file)), unfinished_(file_ + ".unfinished") {
  std::error_code ignored;
  const auto status = fs::status(file_, ignored);
  if (fs::exists(status) && !fs::is_regular_file(status))
    throw Failure(file_ + " is not a plain file");
  if (fs::exists(status) && !replace) throw Failure(file_ + " exists already; --force replaces it");
  removeFiles(unfinished_);
  setAbandoned(unfinished_);
}

NewFile::~NewFile() {
  removeFiles(unfinished_);
  setAbandoned({});
}

void NewFile::complete() {
  std::error_code failed;
  fs::rename(unfinished_, file_, failed);
  if (failed) throw Failure("cannot write " + file_ + ": " + failed.message());
}

}  // namespace velmora::cli
