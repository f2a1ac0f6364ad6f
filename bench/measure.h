#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace velmora::bench {

/// Seconds that `work` took.
template <class Work>
double seconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace velmora::bench
