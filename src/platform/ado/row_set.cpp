#include "platform/ado/row_set.h"

#include <algorithm>
#include <bit>

namespace velmora::ado {

namespace {

constexpr std::size_t kWordBits = RowSet::kWordBits;
constexpr std::size_t kFewRows = 32;

constexpr std::uint64_t bit(std::size_t position) {
  return std::uint64_t{1} << (position % kWordBits);
}
constexpr std::uint64_t bitsBelow(std::size_t position) {
  return bit(position) - 1;
}
constexpr std::uint64_t bitsFrom(std::size_t position) {
  return ~bitsBelow(position);
}

std::size_t lowest(std::uint64_t word) {
  return static_cast<std::size_t>(std::countr_zero(word));
}
std::size_t highest(std::uint64_t word) {
  return kWordBits - 1 - static_cast<std::size_t>(std::countl_zero(word));
}

}  // namespace

bool RowSet::hasWord(std::size_t level, std::size_t word) const noexcept {
  return word < levels_[level].size();
}

bool RowSet::listed(std::size_t row) const noexcept {
  return std::ranges::binary_search(few_, row);
}

void RowSet::insert(std::size_t row) {
  if (contains(row)) return;
  if (levels_.empty() && few_.size() < kFewRows) {
    few_.insert(std::ranges::upper_bound(few_, row), row);
    return;
  }
  if (levels_.empty()) spread();
  insertIntoLevels(row);
}

/// Goes over from the list to the levels.
void RowSet::spread() {
  for (const std::size_t row : few_) insertIntoLevels(row);
  few_ = {};
}

void RowSet::insertIntoLevels(std::size_t row) {
  ++count_;
  std::size_t position = row;
  for (std::size_t level = 0;; ++level) {
    if (level == levels_.size()) {
      levels_.emplace_back();
      // A new level also has to stand for what is below it already.
      if (level > 0 && levels_[level - 1].front() != 0) levels_[level].assign(1, 1);
    }
    const std::size_t word = position / kWordBits;
    Level& words = levels_[level];
    if (words.size() <= word) words.resize(word + 1);
    words[word] |= bit(position);
    if (words.size() == 1 && level + 1 == levels_.size()) return;
    position = word;
  }
}

void RowSet::erase(std::size_t row) noexcept {
  if (!contains(row)) return;
  if (levels_.empty()) {
    few_.erase(std::ranges::lower_bound(few_, row));
    return;
  }
  --count_;
  std::size_t position = row;
  for (Level& words : levels_) {
    std::uint64_t& word = words[position / kWordBits];
    word &= ~bit(position);
    if (word != 0) return;
    position /= kWordBits;
  }
}

std::size_t RowSet::descendToFirst(std::size_t level, std::size_t word) const noexcept {
  for (; level > 0; --level) word = word * kWordBits + lowest(levels_[level][word]);
  return word * kWordBits + lowest(levels_[0][word]);
}

std::size_t RowSet::descendToLast(std::size_t level, std::size_t word) const noexcept {
  for (; level > 0; --level) word = word * kWordBits + highest(levels_[level][word]);
  return word * kWordBits + highest(levels_[0][word]);
}

std::size_t RowSet::firstFrom(std::size_t row) const noexcept {
  if (levels_.empty()) {
    const auto found = std::ranges::lower_bound(few_, row);
    return found == few_.end() ? kNone : *found;
  }
  std::size_t position = row;
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    const std::size_t word = position / kWordBits;
    if (!hasWord(level, word)) return kNone;
    if (const auto rest = levels_[level][word] & bitsFrom(position); rest != 0) {
      const std::size_t found = word * kWordBits + lowest(rest);
      return level == 0 ? found : descendToFirst(level - 1, found);
    }
    position = word + 1;
  }
  return kNone;
}

std::size_t RowSet::lastBefore(std::size_t row) const noexcept {
  if (levels_.empty()) {
    const auto end = std::ranges::lower_bound(few_, row);
    return end == few_.begin() ? kNone : *(end - 1);
  }
  std::size_t end = row;  // positions below it are looked at
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    const std::size_t size = levels_[level].size() * kWordBits;
    if (end > size) end = size;
    if (end == 0) return kNone;
    const std::size_t word = (end - 1) / kWordBits;
    const auto mask = end % kWordBits == 0 ? ~std::uint64_t{0} : bitsBelow(end);
    if (const auto rest = levels_[level][word] & mask; rest != 0) {
      const std::size_t found = word * kWordBits + highest(rest);
      return level == 0 ? found : descendToLast(level - 1, found);
    }
    end = word;
  }
  return kNone;
}

std::size_t RowSet::countBefore(std::size_t row) const noexcept {
  if (levels_.empty())
    return static_cast<std::size_t>(std::ranges::lower_bound(few_, row) - few_.begin());
  std::size_t rows = 0;
  const std::size_t whole = std::min(row / kWordBits, levels_[0].size());
  for (std::size_t word = 0; word < whole; ++word)
    rows += static_cast<std::size_t>(std::popcount(levels_[0][word]));
  if (hasWord(0, row / kWordBits))
    rows += static_cast<std::size_t>(std::popcount(levels_[0][row / kWordBits] & bitsBelow(row)));
  return rows;
}

}  // namespace velmora::ado
