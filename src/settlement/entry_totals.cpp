#include "settlement/entry_totals.h"

#include <algorithm>

namespace velmora::settlement {

namespace {

std::size_t hashOf(const Entry& entry) {
  auto hash = static_cast<std::uint64_t>(entry.texts);
  for (const std::int64_t number : entry.numbers) {
    hash = (hash ^ static_cast<std::uint64_t>(number)) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 32;
  }
  return static_cast<std::size_t>(hash);
}

}  // namespace

std::size_t EntryTotals::placeOf(const Entry& entry) {
  // At most half of the slots are taken, so that a search always ends.
  if (nodes_.size() * 2 >= slots_.size()) grow();
  std::uint32_t& slot = slotFor(entry);
  if (slot == kFree) {
    slot = static_cast<std::uint32_t>(nodes_.size());
    nodes_.push_back({entry, {}});
  }
  return slot;
}

/// The slot that holds the entry, else the free one where it belongs.
std::uint32_t& EntryTotals::slotFor(const Entry& entry) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hashOf(entry) & mask;
  while (slots_[slot] != kFree && nodes_[slots_[slot]].entry != entry) slot = (slot + 1) & mask;
  return slots_[slot];
}

void EntryTotals::grow() {
  slots_.assign(std::max<std::size_t>(slots_.size() * 4, 64), kFree);
  for (std::size_t place = 0; place < nodes_.size(); ++place)
    slotFor(nodes_[place].entry) = static_cast<std::uint32_t>(place);
}

}  // namespace velmora::settlement
