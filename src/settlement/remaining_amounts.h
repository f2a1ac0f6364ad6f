#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora::settlement {

/// Tells on every settlement row what stays open on its document entry after it and
/// all earlier rows of the same entry.
///
/// The totals are kept between runs of one settlement: rows are only ever added, so
/// each is looked at once however many groups there are.
class RemainingAmounts {
 public:
  /// Completes the rows that came since the last time. Raises naming row and key when
  /// a row is no Dictionary or an amount no number.
  void complete(const collections::Vector& rsChkInfo);

 private:
  /// FBillID, FType and FEntryID; as text when they are not whole numbers.
  struct Entry {
    std::array<std::int64_t, 3> numbers{};
    std::string text;
    bool operator==(const Entry&) const = default;
  };
  struct EntryHash {
    std::size_t operator()(const Entry& entry) const noexcept;
  };
  struct Totals {
    collections::Decimal amountFor, amount, quantity;
  };
  class Row;

  static Entry entryOf(const Row& row);
  void complete(Row& row);

  std::size_t completed_ = 0;
  std::unordered_map<Entry, Totals, EntryHash> totals_;
};

}  // namespace velmora::settlement
