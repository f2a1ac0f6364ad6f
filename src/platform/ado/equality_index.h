#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/ado/filter_criteria.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado {

/// For every value of a column the rows that hold it, so that a filter of one
/// customer does not look at the rows of all others.
///
/// Worth its price only for a column whose cells stay and that is asked for more
/// than one value: it is built at the second value, and given up for good when a
/// cell changes.
class EqualityIndex {
 public:
  using Rows = std::vector<std::uint32_t>;
  using CellOfRow = std::function<const Variant&(std::size_t row)>;

  /// The rows, ascending, among which all that satisfy `comparison` (an equality)
  /// are; nullptr when the index cannot tell.
  const Rows* candidates(const Comparison& comparison, std::size_t rowCount,
                         const CellOfRow& cellOfRow);

  /// A cell of the column changed.
  void cellChanged() noexcept;
  /// A row was added; the index is built anew when it is next wanted.
  void rowAdded() noexcept;

 private:
  enum class State { unused, askedOnce, built, givenUp };

  void build(std::size_t rowCount, const CellOfRow& cellOfRow);
  void giveUp() noexcept;

  State state_ = State::unused;
  std::string firstKey_;
  std::unordered_map<std::string, Rows> rows_;
};

}  // namespace velmora::ado
