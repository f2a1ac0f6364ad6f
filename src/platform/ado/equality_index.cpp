#include "platform/ado/equality_index.h"

#include <optional>

#include "velmora/collections/letter_case.h"

namespace velmora::ado {

namespace {

using collections::VarType;

/// The same text for values that compare as equal; nothing for kinds whose
/// values are not looked up.
std::optional<std::string> keyOf(const Variant& value) {
  switch (value.type()) {
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
      return std::to_string(value.toInt64());
    case VarType::decimal:
      return value.toDecimal().normalized().toString();
    case VarType::date:
      return std::to_string(value.toDate().microseconds());
    case VarType::string:
      return collections::lowerCased(value.text());
    default:
      return std::nullopt;
  }
}

}  // namespace

const EqualityIndex::Rows* EqualityIndex::candidates(const Comparison& comparison,
                                                     std::size_t rowCount,
                                                     const CellOfRow& cellOfRow) {
  static const Rows none;
  const auto key = keyOf(comparison.value);
  if (!key || state_ == State::givenUp) return nullptr;
  if (state_ == State::unused) {
    state_ = State::askedOnce;
    firstKey_ = *key;
  }
  if (state_ == State::askedOnce && *key == firstKey_) return nullptr;
  if (state_ != State::built) build(rowCount, cellOfRow);
  if (state_ != State::built) return nullptr;
  const auto found = rows_.find(*key);
  return found == rows_.end() ? &none : &found->second;
}

void EqualityIndex::build(std::size_t rowCount, const CellOfRow& cellOfRow) {
  for (std::size_t row = 0; row < rowCount; ++row) {
    const Variant& cell = cellOfRow(row);
    if (cell.isNull()) continue;  // equal to nothing
    const auto key = keyOf(cell);
    if (!key) return giveUp();
    rows_[*key].push_back(static_cast<std::uint32_t>(row));
  }
  state_ = State::built;
}

void EqualityIndex::cellChanged() noexcept {
  if (state_ == State::built) giveUp();
}

void EqualityIndex::giveUp() noexcept {
  rows_.clear();
  state_ = State::givenUp;
}

void EqualityIndex::rowAdded() noexcept {
  if (state_ != State::built) return;
  rows_.clear();
  state_ = State::askedOnce;
}

}  // namespace velmora::ado
