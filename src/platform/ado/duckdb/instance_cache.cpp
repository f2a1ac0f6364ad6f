#include "platform/ado/duckdb/instance_cache.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>

#include "platform/ado/duckdb/engine_error.h"

namespace velmora::ado::embedded {

namespace {

/// The open files of this process. Opening and closing happen under the mutex: the
/// engine's file locks hold between processes only, so two instances of one file in the
/// same process would destroy it.
class Cache {
 public:
  Instance* acquire(const std::string& key, const Settings& settings) {
    const std::lock_guard lock(mutex_);
    auto found = entries_.find(key);
    if (found == entries_.end())
      found = entries_.emplace(key, Entry{std::make_unique<Instance>(settings), 0}).first;
    auto& entry = found->second;
    if (entry.instance->readOnly() && !settings.readOnly())
      throwConnectError("Cannot open the database \"" + settings.file +
                        "\" for writing: this process has it open for reading. Close those "
                        "connections first.");
    ++entry.shares;
    return entry.instance.get();
  }

  void release(const std::string& key) noexcept {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(key);
    if (--found->second.shares == 0) entries_.erase(found);
  }

 private:
  struct Entry {
    std::unique_ptr<Instance> instance;
    int shares;
  };
  std::mutex mutex_;
  std::map<std::string, Entry> entries_;
};

/// Never destroyed: connections of static objects may outlive it otherwise.
Cache& cache() {
  static Cache& instance = *new Cache;
  return instance;
}

std::string canonicalPath(const std::string& file) {
  std::error_code error;
  const auto path =
      std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
  return error ? file : path.string();
}

}  // namespace

InstanceShare::InstanceShare(const Settings& settings) {
  if (settings.inMemory()) {
    inMemory_ = std::make_unique<Instance>(settings);
    instance_ = inMemory_.get();
  } else {
    file_ = canonicalPath(settings.file);
    instance_ = cache().acquire(file_, settings);
  }
}

InstanceShare::~InstanceShare() {
  if (!inMemory_) cache().release(file_);
}

}  // namespace velmora::ado::embedded
