#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "settlement/entry_totals.h"
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
  explicit RemainingAmounts(bool withQuantities) : withQuantities_(withQuantities) {}

  /// Completes the rows that came since the last time. Raises naming row and key when
  /// a row is no Dictionary or an amount no number.
  void complete(const collections::Vector& rsChkInfo);
  /// Completes the row that comes next. Raises as the above.
  void complete(collections::Dictionary& row);

 private:
  class Row;

  /// The keys that a row needs, and where they are in rows like one seen before.
  static constexpr std::size_t kKeyCount = 12;
  using Positions = std::array<std::size_t, kKeyCount>;
  struct Layout {
    collections::DictionaryRef row;
    Positions positions;
  };

  const Positions& positionsOf(collections::Dictionary& row);
  Entry entryOf(const Row& row);
  Totals& totalsOf(const Row& row);
  void complete(Row& row);
  void completeQuantity(Row& row, Totals& totals, bool increases);

  bool withQuantities_;
  std::size_t completed_ = 0;
  std::array<Layout, 2> layouts_{};  // the rows of a settlement have two
  EntryTotals totals_;
  // A row and its mirror come in turn, and one of the two documents often stays.
  std::array<std::size_t, 2> recent_{};
  std::unordered_map<std::string, std::int64_t> texts_;
};

}  // namespace velmora::settlement
