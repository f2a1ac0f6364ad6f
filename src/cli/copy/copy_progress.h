#pragma once

#include <fmt/format.h>

#include "cli/copy/account_set_copy.h"
#include "cli/output/counted.h"
#include "cli/output/terminal.h"

namespace velmora::cli {

/// Options that show on `line`, which outlives them, how many rows of a table are done.
inline CopyOptions showingProgress(ProgressLine& line) {
  CopyOptions options;
  options.progress = [&line](const std::string& table, std::int64_t done, std::int64_t total) {
    line.show(fmt::format("{}: {} of {}", table, done, counted(total, "row")));
  };
  return options;
}

}  // namespace velmora::cli
