#pragma once

namespace velmora::tsql {

/// A place in a batch's text, both 1-based; the column counts characters, not bytes.
struct Position {
  int line = 1;
  int column = 1;

  friend bool operator==(const Position&, const Position&) = default;
};

}  // namespace velmora::tsql
