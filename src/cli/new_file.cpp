#include "cli/new_file.h"

#include <filesystem>

#include "cli/failure.h"

namespace velmora::cli {

namespace fs = std::filesystem;

NewFile::NewFile(std::string file, bool replace)
    : file_(std::move(file)), unfinished_(file_ + ".unfinished") {
  std::error_code ignored;
  const auto status = fs::status(file_, ignored);
  if (fs::exists(status) && !fs::is_regular_file(status))
    throw Failure(file_ + " is not a plain file");
  if (fs::exists(status) && !replace) throw Failure(file_ + " exists already; --force replaces it");
  removeUnfinished();
}

NewFile::~NewFile() {
  removeUnfinished();
}

void NewFile::complete() {
  std::error_code failed;
  fs::rename(unfinished_, file_, failed);
  if (failed) throw Failure("cannot write " + file_ + ": " + failed.message());
}

void NewFile::removeUnfinished() noexcept {
  std::error_code ignored;
  // The database's log of changes goes with it.
  for (const char* ending : {"", ".wal"}) fs::remove(unfinished_ + ending, ignored);
}

}  // namespace velmora::cli
