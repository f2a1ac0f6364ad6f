#include "settlement/pair_rows.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include "settlement/row_maps.h"

namespace velmora::settlement {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;

namespace {

/// The keys that the allocation computes.
constexpr std::string_view kComputed[] = {
    "FCheckAmountFor",  "FCheckAmountFor_SRC",  "FCheckAmount",    "FCheckAmount_SRC",
    "FRemainAmountFor", "FRemainAmountFor_SRC", "FRemainAmount",   "FRemainAmount_SRC",
    "FCheckQuantity",   "FCheckQuantity_SRC",   "FRemainQuantity", "FRemainQuantity_SRC"};

std::size_t computedIndex(std::string_view key) {
  return static_cast<std::size_t>(std::ranges::find(kComputed, key) - std::begin(kComputed));
}

/// The computed keys in the order in which a pair is settled: local amounts, quantities,
/// amounts, and of the first two the used-up document's share before the other's. Files of
/// settlement rows show them so.
std::vector<std::string> computedKeys(UsedUp usedUp, bool withQuantities) {
  std::vector<std::string> keys;
  const auto add = [&keys](std::initializer_list<const char*> more) {
    keys.insert(keys.end(), more.begin(), more.end());
  };
  const bool innerFirst = usedUp == UsedUp::inner;
  if (innerFirst)
    add({"FCheckAmount", "FCheckAmount_SRC"});
  else
    add({"FCheckAmount_SRC", "FCheckAmount"});
  add({"FRemainAmount", "FRemainAmount_SRC"});
  if (!withQuantities)
    add({"FCheckQuantity", "FCheckQuantity_SRC", "FRemainQuantity", "FRemainQuantity_SRC"});
  else if (innerFirst)
    add({"FCheckQuantity", "FRemainQuantity", "FCheckQuantity_SRC", "FRemainQuantity_SRC"});
  else
    add({"FCheckQuantity_SRC", "FCheckQuantity", "FRemainQuantity", "FRemainQuantity_SRC"});
  add({"FCheckAmountFor", "FCheckAmountFor_SRC", "FRemainAmountFor", "FRemainAmountFor_SRC"});
  return keys;
}

}  // namespace

PairRows::PairRows(const Dictionary& copyMap, const Dictionary& mirrorMap, bool singleAmount,
                   bool withQuantities) {
  for (const UsedUp usedUp : {UsedUp::inner, UsedUp::outer})
    layouts_[static_cast<std::size_t>(usedUp)] =
        layoutOf(usedUp, copyMap, mirrorMap, singleAmount, withQuantities);
}

PairRows::Layout PairRows::layoutOf(UsedUp usedUp, const Dictionary& copyMap,
                                    const Dictionary& mirrorMap, bool singleAmount,
                                    bool withQuantities) {
  Sources sources;
  // A row whose values are positions in `sources`: exchanging them tells which value
  // each key gets.
  const auto row = com::make<Dictionary>();
  const auto addKey = [&](const std::string& key, Source source) {
    row->Add(key, static_cast<std::int64_t>(sources.size()));
    sources.push_back(source);
  };
  for (const std::string& key : computedKeys(usedUp, withQuantities))
    addKey(key, {Source::Kind::computed, computedIndex(key)});
  for (std::size_t i = 0; i < copyMap.Count(); ++i) {
    const bool first = copyMap.Item(i).toText().starts_with("1|");
    addKey(copyMap.Key(i), {first ? Source::Kind::inner : Source::Kind::outer, i});
  }
  const auto sourcesOf = [&] {
    Sources chosen;
    for (std::size_t i = 0; i < row->Count(); ++i)
      chosen.push_back(sources[static_cast<std::size_t>(row->Item(i).toInt64())]);
    return chosen;
  };
  Layout layout;
  layout.keys = row->Clone();
  if (singleAmount) {
    for (const std::string key : {"FCheckAmount", "FRemainAmount"})
      for (const char* end : {"", "_SRC"}) SwapValues(*row, key + "For" + end, key + end);
  }
  layout.row = sourcesOf();
  for (std::size_t i = 0; i < mirrorMap.Count(); ++i)
    SwapValues(*row, mirrorMap.Key(i), mirrorMap.Item(i).toText());
  layout.mirror = sourcesOf();
  return layout;
}

std::array<DictionaryRef, 2> PairRows::rowsOf(UsedUp usedUp, const PairAmounts& innerAmounts,
                                              const OpenDocument& inner,
                                              const PairAmounts& outerAmounts,
                                              const OpenDocument& outer) {
  auto computed = computed_.begin();
  for (const auto amount :
       {&PairAmounts::checkAmountFor, &PairAmounts::checkAmount, &PairAmounts::remainAmountFor,
        &PairAmounts::remainAmount, &PairAmounts::checkQuantity, &PairAmounts::remainQuantity}) {
    *computed++ = innerAmounts.*amount;
    *computed++ = outerAmounts.*amount;
  }
  const Layout& layout = layouts_[static_cast<std::size_t>(usedUp)];
  return {made(layout, layout.row, inner, outer), made(layout, layout.mirror, inner, outer)};
}

DictionaryRef PairRows::made(const Layout& layout, const Sources& sources,
                             const OpenDocument& inner, const OpenDocument& outer) const {
  std::vector<Variant> values;
  values.reserve(sources.size());
  for (const auto [kind, index] : sources) {
    if (kind == Source::Kind::computed)
      values.emplace_back(computed_[index]);
    else
      values.push_back((kind == Source::Kind::inner ? inner : outer).copied(index));
  }
  return layout.keys->CloneWith(std::move(values));
}

}  // namespace velmora::settlement
