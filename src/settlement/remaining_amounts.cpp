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
    return numberIn(value(key), [&] {
      return "rsChkInfo, row " + std::to_string(number_) + ", " + kKeys[key];
    });
  }
  bool hasNumber(Key key) const { return value(key).isNumeric() || tryNumber(value(key)); }
  void set(Key key, const Variant& number) { row_.SetItem(positions_[key], number); }

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
  while (completed_ < rsChkInfo.Size()) {
    const Variant& item = rsChkInfo.Item(completed_);
    const auto dictionary = item.type() == collections::VarType::object
                                ? item.toObject().as<Dictionary>()
                                : DictionaryRef();
    if (!dictionary)
      throw com::Error(com::error::kTypeMismatch, "clsPublic",
                       "rsChkInfo, row " + std::to_string(completed_ + 1) + ": no Dictionary");
    complete(*dictionary);
  }
}

void RemainingAmounts::complete(Dictionary& dictionary) {
  Row row(dictionary, positionsOf(dictionary), completed_ + 1);
  complete(row);
  ++completed_;
}

const RemainingAmounts::Positions& RemainingAmounts::positionsOf(Dictionary& row) {
  for (const Layout& layout : layouts_)
    if (layout.row && row.SharesKeys(*layout.row)) return layout.positions;
  std::swap(layouts_[0], layouts_[1]);
  layouts_[0] = {DictionaryRef(&row), positionsIn<Positions>(row)};
  return layouts_[0].positions;
}

void RemainingAmounts::complete(Row& row) {
  Totals& totals = totalsOf(row);
  const Decimal amountFor = row.number(FCheckAmountFor);
  const Decimal amount = row.number(FCheckAmount);
  completeQuantity(row, totals, amountFor.sign() > 0);
  row.set(FRemainAmountFor, row.number(FBillRemainAmountFor) - totals.amountFor - amountFor);
  row.set(FRemainAmount, row.number(FBillRemainAmount) - amount - totals.amount);
  totals.amountFor += amountFor;
  totals.amount += amount;
}

void RemainingAmounts::completeQuantity(Row& row, Totals& totals, bool increases) {
  // Documents without quantities may hold anything there when nobody asks for them.
  if (!withQuantities_ && !(row.hasNumber(FCheckQuantity) && row.hasNumber(FBillRemainQty)))
    return row.set(FRemainQuantity, collections::Null());
  const Decimal size = row.number(FCheckQuantity).abs();
  const Decimal quantity = increases ? size : -size;
  row.set(FCheckQuantity, quantity);
  row.set(FRemainQuantity, row.number(FBillRemainQty) - quantity - totals.quantity);
  totals.quantity += quantity;
}

}  // namespace velmora::settlement
