#pragma once

#include <memory>
#include <string>

#include "platform/ado/duckdb/instance.h"

namespace velmora::ado::embedded {

/// A share in an open instance; the last one to go closes the file.
class InstanceShare {
 public:
  /// A share in the instance that this process has open for the same file, or in a
  /// newly opened one; the first connection's threads and memory count. Databases in
  /// memory are not shared. Thread-safe.
  /// Raises com::error::kProviderConnect as Instance does, and when the file is open for
  /// reading and is now wanted for writing.
  explicit InstanceShare(const Settings& settings);
  InstanceShare(const InstanceShare&) = delete;
  InstanceShare& operator=(const InstanceShare&) = delete;
  ~InstanceShare();

  Instance* operator->() const noexcept { return instance_; }

 private:
  std::unique_ptr<Instance> inMemory_;
  std::string file_;  // its canonical path; empty in memory
  Instance* instance_;
};

}  // namespace velmora::ado::embedded
