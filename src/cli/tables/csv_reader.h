#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

struct CsvCell {
  std::string text;
  bool quoted = false;  ///< an empty cell without quotes is NULL
};

struct CsvRow {
  std::size_t line = 0;  ///< where it begins, from 1
  std::vector<CsvCell> cells;
};

/// The rows of RFC 4180 text, each with as many cells as the first; line ends may be CR LF
/// or LF, a byte-order mark and blank lines are skipped. Raises Failure naming the line.
std::vector<CsvRow> parseCsv(std::string_view text);

}  // namespace velmora::cli
