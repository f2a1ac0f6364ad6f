#pragma once

#include <string>
#include <vector>

namespace velmora::bench {

struct ProcessRun {
  double seconds = 0;
  double peakMemoryMiB = 0;
  int exitStatus = -1;
};

/// Runs a program to its end with its output thrown away.
ProcessRun runProcess(const std::vector<std::string>& command);

}  // namespace velmora::bench
