#include "settlement/remaining_amounts.h"

#include <functional>
#include <optional>

#include "settlement/numbers.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::Vector;

namespace {

enum Key : std::size_t {
  FBillID,
  FType,
  FEntryID,
  FCheckAmountFor,
  FCheckAmount,
  FCheckQuantity,
  FBillRemainAmountFor,
  FBillRemainAmount,
  FBillRemainQty,
  FRemainAmountFor,
  FRemainAmount,
  FRemainQuantity,
};
constexpr std::array kKeys{"FBillID",
                           "FType",
                           "FEntryID",
                           "FCheckAmountFor",
                           "FCheckAmount",
                           "FCheckQuantity",
                           "FBillRemainAmountFor",
                           "FBillRemainAmount",
                           "FBillRemainQty",
                           "FRemainAmountFor",
                           "FRemainAmount",
                           "FRemainQuantity"};
using Positions = std::array<std::size_t, kKeys.size()>;

/// Where the keys are in `row`; those it lacks are added.
Positions positionsIn(Dictionary& row) {
  Positions positions;
  for (std::size_t key = 0; key < kKeys.size(); ++key) {
    if (!row.Lookup(kKeys[key])) row.Set(kKeys[key], {});
    positions[key] = *row.IndexOf(kKeys[key]);
  }
  return positions;
}

std::optional<std::int64_t> wholeNumber(const Variant& value) {
  const auto number = value.isNumeric() || value.isString() ? tryNumber(value) : std::nullopt;
  if (!number || number->truncated(0) != *number) return std::nullopt;
  if (number->abs() > Decimal(INT64_MAX)) return std::nullopt;
  return number->toInt64();
}

}  // namespace

/// A settlement row, its keys found.
class RemainingAmounts::Row {
 public:
  Row(Dictionary& row, const Positions& positions, std::size_t number)
      : row_(row), positions_(positions), number_(number) {}

  const Variant& value(Key key) const { return row_.Item(positions_[key]); }
  Decimal number(Key key) const {
    if (const auto number = tryNumber(value(key))) return *number;
    failNumber(value(key), "rsChkInfo, row " + std::to_string(number_) + ", " + kKeys[key]);
  }
  void set(Key key, const Decimal& number) { row_.SetItem(positions_[key], number); }

 private:
  Dictionary& row_;
  const Positions& positions_;
  std::size_t number_;  // from 1
};

std::size_t RemainingAmounts::EntryHash::operator()(const Entry& entry) const noexcept {
  std::size_t hash = std::hash<std::string>()(entry.text);
  for (const std::int64_t number : entry.numbers)
    hash = (hash ^ static_cast<std::size_t>(number)) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 32);
}

RemainingAmounts::Entry RemainingAmounts::entryOf(const Row& row) {
  Entry entry;
  for (const Key key : {FBillID, FType, FEntryID}) {
    if (const auto number = wholeNumber(row.value(key)))
      entry.numbers[key] = *number;
    else if (!row.value(key).isNull() && row.value(key).type() != collections::VarType::object)
      entry.text += std::to_string(key) + '|' + row.value(key).toText() + '|';
  }
  return entry;
}

void RemainingAmounts::complete(const Vector& rsChkInfo) {
  DictionaryRef last;  // the row whose keys have the positions
  Positions positions{};
  for (; completed_ < rsChkInfo.Size(); ++completed_) {
    const Variant& item = rsChkInfo.Item(completed_);
    const auto dictionary = item.type() == collections::VarType::object
                                ? item.toObject().as<Dictionary>()
                                : DictionaryRef();
    if (!dictionary)
      throw com::Error(com::error::kTypeMismatch, "clsPublic",
                       "rsChkInfo, row " + std::to_string(completed_ + 1) + ": no Dictionary");
    if (!last || !dictionary->SharesKeys(*last)) positions = positionsIn(*dictionary);
    last = dictionary;
    Row row(*dictionary, positions, completed_ + 1);
    complete(row);
  }
}

void RemainingAmounts::complete(Row& row) {
  Totals& totals = totals_[entryOf(row)];
  const Decimal amountFor = row.number(FCheckAmountFor);
  const Decimal amount = row.number(FCheckAmount);
  const Decimal size = row.number(FCheckQuantity).abs();
  const Decimal quantity = amountFor.sign() > 0 ? size : -size;
  row.set(FCheckQuantity, quantity);
  row.set(FRemainQuantity, row.number(FBillRemainQty) - quantity - totals.quantity);
  row.set(FRemainAmountFor, row.number(FBillRemainAmountFor) - totals.amountFor - amountFor);
  row.set(FRemainAmount, row.number(FBillRemainAmount) - amount - totals.amount);
  totals.amountFor += amountFor;
  totals.amount += amount;
  totals.quantity += quantity;
}

}  // namespace velmora::settlement
