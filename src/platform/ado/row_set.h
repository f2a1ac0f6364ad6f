#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora::ado {

/// A set of row numbers in ascending order. Adding, removing and finding the
/// neighbour of a row cost a few word operations whatever the size: a bit per
/// row, and above it levels whose bits tell which words of the level below are
/// not empty. A few rows are simply listed, so that the small view of one group
/// does not cost the size of the recordset.
class RowSet {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr std::size_t kWordBits = 64;

  bool contains(std::size_t row) const noexcept {
    if (levels_.empty()) return listed(row);
    const std::size_t word = row / kWordBits;
    return word < levels_[0].size() && (levels_[0][word] >> (row % kWordBits) & 1) != 0;
  }
  /// Adding a row that is there, or erasing one that is not, does nothing.
  void insert(std::size_t row);
  void erase(std::size_t row) noexcept;
  std::size_t count() const noexcept { return levels_.empty() ? few_.size() : count_; }

  /// The first row not before `row`, kNone when there is none.
  std::size_t firstFrom(std::size_t row) const noexcept;
  /// The last row before `row`, kNone when there is none.
  std::size_t lastBefore(std::size_t row) const noexcept;
  /// Rows before `row`.
  std::size_t countBefore(std::size_t row) const noexcept;

 private:
  using Level = std::vector<std::uint64_t>;
  bool listed(std::size_t row) const noexcept;
  void spread();
  void insertIntoLevels(std::size_t row);
  bool hasWord(std::size_t level, std::size_t word) const noexcept;
  std::size_t descendToFirst(std::size_t level, std::size_t word) const noexcept;
  std::size_t descendToLast(std::size_t level, std::size_t word) const noexcept;

  std::vector<std::size_t> few_;  // all rows, ascending, while there are no levels
  std::vector<Level> levels_;     // levels_[0]: rows; the last level has one word
  std::size_t count_ = 0;         // of the rows in the levels
};

}  // namespace velmora::ado
