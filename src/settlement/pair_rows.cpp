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

}  // namespace

PairRows::PairRows(const Dictionary& copyMap, const Dictionary& mirrorMap, bool singleAmount) {
  Sources sources;
  // A row whose values are positions in `sources`: exchanging them tells which value
  // each key gets.
  const auto row = com::make<Dictionary>();
  const auto addKey = [&](const std::string& key, Source source) {
    row->Add(key, static_cast<std::int64_t>(sources.size()));
    sources.push_back(source);
  };
  for (std::size_t i = 0; i < std::size(kComputed); ++i)
    addKey(kComputed[i], {Source::Kind::computed, i});
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
  keys_ = row->Clone();
  if (singleAmount) {
    for (const std::string key : {"FCheckAmount", "FRemainAmount"})
      for (const char* end : {"", "_SRC"}) SwapValues(*row, key + "For" + end, key + end);
  }
  row_ = sourcesOf();
  for (std::size_t i = 0; i < mirrorMap.Count(); ++i)
    SwapValues(*row, mirrorMap.Key(i), mirrorMap.Item(i).toText());
  mirror_ = sourcesOf();
}

void PairRows::append(const PairAmounts& innerAmounts, const OpenDocument& inner,
                      const PairAmounts& outerAmounts, const OpenDocument& outer,
                      Vector& rsChkInfo) {
  auto computed = computed_.begin();
  for (const auto amount :
       {&PairAmounts::checkAmountFor, &PairAmounts::checkAmount, &PairAmounts::remainAmountFor,
        &PairAmounts::remainAmount, &PairAmounts::checkQuantity, &PairAmounts::remainQuantity}) {
    *computed++ = innerAmounts.*amount;
    *computed++ = outerAmounts.*amount;
  }
  addRow(row_, inner, outer, rsChkInfo);
  addRow(mirror_, inner, outer, rsChkInfo);
}

void PairRows::addRow(const Sources& sources, const OpenDocument& inner, const OpenDocument& outer,
                      Vector& rsChkInfo) const {
  std::vector<Variant> values;
  values.reserve(sources.size());
  for (const auto [kind, index] : sources) {
    if (kind == Source::Kind::computed)
      values.emplace_back(computed_[index]);
    else
      values.push_back((kind == Source::Kind::inner ? inner : outer).copied(index));
  }
  rsChkInfo.Add(keys_->CloneWith(std::move(values)));
}

}  // namespace velmora::settlement
