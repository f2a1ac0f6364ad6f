#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "velmora/collections/decimal.h"

namespace velmora::settlement {

/// FBillID, FType and FEntryID of a document entry, and which of them are texts (a bit
/// each), for which the number stands for the text.
struct Entry {
  std::array<std::int64_t, 3> numbers{};
  int texts = 0;
  bool operator==(const Entry&) const = default;
};

struct Totals {
  collections::Decimal amountFor, amount, quantity;
};

/// Totals by document entry. Nearly every pair brings a new entry, so the entries stand
/// in the order in which they came, found through an open-addressing table.
class EntryTotals {
 public:
  /// The place of an entry, which is kept from then on; new ones start at 0.
  std::size_t placeOf(const Entry& entry);
  const Entry& entry(std::size_t place) const noexcept { return nodes_[place].entry; }
  Totals& totals(std::size_t place) noexcept { return nodes_[place].totals; }
  std::size_t count() const noexcept { return nodes_.size(); }

 private:
  struct Node {
    Entry entry;
    Totals totals;
  };
  static constexpr std::uint32_t kFree = UINT32_MAX;

  std::uint32_t& slotFor(const Entry& entry);
  void grow();

  std::vector<Node> nodes_;
  std::vector<std::uint32_t> slots_;
};

}  // namespace velmora::settlement
