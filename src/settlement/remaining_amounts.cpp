#include "settlement/remaining_amounts.h"

#include <optional>
#include <tuple>

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

/// Where the keys are in `row`; those it lacks are added.
template <class Positions>
Positions positionsIn(Dictionary& row) {
  static_assert(std::tuple_size_v<Positions> == kKeys.size());
  Positions positions;
  for (std::size_t key = 0; key < kKeys.size(); ++key) {
    if (!row.Lookup(kKeys[key])) row.Set(kKeys[key], {});
    positions[key] = *row.IndexOf(kKeys[key]);
  }
  return positions;
}

bool isInteger(const Variant& value) {
  return value.isNumeric() && value.type() <= collections::VarType::int64;
}

std::optional<std::int64_t> wholeNumber(const Variant& value) {
  if (isInteger(value)) return value.toInt64();
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

Entry RemainingAmounts::entryOf(const Row& row) {
  Entry entry;
  for (const Key key : {FBillID, FType, FEntryID}) {
    const Variant& value = row.value(key);
    if (const auto number = wholeNumber(value)) {
      entry.numbers[key] = *number;
      continue;
    }
    const std::string text = value.isNull() ? std::string() : value.toText();
    const auto next = static_cast<std::int64_t>(texts_.size());
    entry.numbers[key] = texts_.try_emplace(text, next).first->second;
    entry.texts |= 1 << key;
  }
  return entry;
}

Totals& RemainingAmounts::totalsOf(const Row& row) {
  const Entry entry = entryOf(row);
  std::size_t& recent = recent_[completed_ % recent_.size()];
  if (recent >= totals_.count() || totals_.entry(recent) != entry) recent = totals_.placeOf(entry);
  return totals_.totals(recent);
}

void RemainingAmounts::complete(const Vector& rsChkInfo) {
  for (; completed_ < rsChkInfo.Size(); ++completed_) {
    const Variant& item = rsChkInfo.Item(completed_);
    auto dictionary = item.type() == collections::VarType::object ? item.toObject().as<Dictionary>()
                                                                  : DictionaryRef();
    if (!dictionary)
      throw com::Error(com::error::kTypeMismatch, "clsPublic",
                       "rsChkInfo, row " + std::to_string(completed_ + 1) + ": no Dictionary");
    if (!last_ || !dictionary->SharesKeys(*last_)) positions_ = positionsIn<Positions>(*dictionary);
    last_ = std::move(dictionary);
    Row row(*last_, positions_, completed_ + 1);
    complete(row);
  }
}

void RemainingAmounts::complete(Row& row) {
  Totals& totals = totalsOf(row);
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
