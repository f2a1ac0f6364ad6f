#pragma once

#include <cstdint>
#include <random>

namespace velmora::cli::demo {

/// Numbers that depend on the seed alone: the standard library's distributions differ
/// from one library to the next, its engine does not.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  /// A number from 0 to limit - 1.
  int below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(limit)); }
  int between(int first, int last) { return first + below(last - first + 1); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace velmora::cli::demo
