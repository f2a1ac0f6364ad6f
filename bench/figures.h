#pragma once

#include <cstdio>
#include <string>

namespace velmora::bench {

/// Prints figures beside their limits and remembers whether every limit was kept.
class Figures {
 public:
  void report(const std::string& what, double figure, double limit, const char* unit) {
    const bool kept = figure <= limit;
    allKept_ = allKept_ && kept;
    std::printf("%-58s %9.3f %-3s limit %g %s\n", what.c_str(), figure, unit, limit,
                kept ? "" : "  NOT KEPT");
  }
  bool allKept() const noexcept { return allKept_; }

 private:
  bool allKept_ = true;
};

}  // namespace velmora::bench
