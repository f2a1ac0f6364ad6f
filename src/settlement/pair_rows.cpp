#include "settlement/pair_rows.h"

#include "settlement/row_maps.h"

namespace velmora::settlement {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::Vector;

namespace {

/// The keys that the allocation computes; the copied ones follow them.
constexpr const char* kComputed[] = {
    "FCheckAmountFor",  "FCheckAmountFor_SRC",  "FCheckAmount",    "FCheckAmount_SRC",
    "FRemainAmountFor", "FRemainAmountFor_SRC", "FRemainAmount",   "FRemainAmount_SRC",
    "FCheckQuantity",   "FCheckQuantity_SRC",   "FRemainQuantity", "FRemainQuantity_SRC"};

std::vector<std::size_t> positionsIn(const Dictionary& row) {
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < row.Count(); ++i)
    positions.push_back(static_cast<std::size_t>(row.Item(i).toInt64()));
  return positions;
}

}  // namespace

PairRows::PairRows(const Dictionary& copyMap, const Dictionary& mirrorMap, bool singleAmount) {
  // A row whose values are their own positions: exchanging them tells which value
  // each key gets.
  const auto row = com::make<Dictionary>();
  const auto addKey = [&](const std::string& key) {
    row->Add(key, static_cast<std::int64_t>(row->Count()));
  };
  for (const char* key : kComputed) addKey(key);
  for (std::size_t i = 0; i < copyMap.Count(); ++i) {
    addKey(copyMap.Key(i));
    fromFirst_.push_back(copyMap.Item(i).toText().starts_with("1|"));
  }
  keys_ = row->Clone();
  values_.resize(row->Count());
  if (singleAmount) {
    for (const std::string key : {"FCheckAmount", "FRemainAmount"})
      for (const char* end : {"", "_SRC"}) SwapValues(*row, key + "For" + end, key + end);
  }
  row_ = positionsIn(*row);
  for (std::size_t i = 0; i < mirrorMap.Count(); ++i)
    SwapValues(*row, mirrorMap.Key(i), mirrorMap.Item(i).toText());
  mirror_ = positionsIn(*row);
}

void PairRows::append(const PairAmounts& innerAmounts, const OpenDocument& inner,
                      const PairAmounts& outerAmounts, const OpenDocument& outer,
                      Vector& rsChkInfo) {
  auto value = values_.begin();
  for (const auto amount :
       {&PairAmounts::checkAmountFor, &PairAmounts::checkAmount, &PairAmounts::remainAmountFor,
        &PairAmounts::remainAmount, &PairAmounts::checkQuantity, &PairAmounts::remainQuantity}) {
    *value++ = innerAmounts.*amount;
    *value++ = outerAmounts.*amount;
  }
  for (std::size_t entry = 0; entry < fromFirst_.size(); ++entry)
    *value++ = (fromFirst_[entry] ? inner : outer).copied(entry);
  addRow(row_, rsChkInfo);
  addRow(mirror_, rsChkInfo);
}

void PairRows::addRow(const Order& order, Vector& rsChkInfo) const {
  std::vector<Variant> values;
  values.reserve(order.size());
  for (const std::size_t position : order) values.push_back(values_[position]);
  rsChkInfo.Add(keys_->CloneWith(std::move(values)));
}

}  // namespace velmora::settlement
