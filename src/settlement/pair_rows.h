#pragma once

#include <array>
#include <vector>

#include "settlement/open_documents.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora::settlement {

/// What one pair settled on one of its two documents, and what that left open.
struct PairAmounts {
  collections::Decimal checkAmountFor, checkAmount, checkQuantity;
  collections::Decimal remainAmountFor, remainAmount, remainQuantity;
};

/// Makes the settlement row of a pair and its mirror. All rows share their keys.
class PairRows {
 public:
  /// `singleAmount`: rows carry one amount, which is the local one in the result.
  PairRows(const collections::Dictionary& copyMap, const collections::Dictionary& mirrorMap,
           bool singleAmount);

  /// Appends both rows: the one of the first recordset's document (`inner`), and the
  /// same pair seen from the second's (`outer`).
  void append(const PairAmounts& innerAmounts, const OpenDocument& inner,
              const PairAmounts& outerAmounts, const OpenDocument& outer,
              collections::Vector& rsChkInfo);

 private:
  /// Where the value under a key comes from.
  struct Source {
    enum class Kind { computed, inner, outer } kind;
    std::size_t index;  ///< of the computed values, else entry of the copy map
  };
  using Sources = std::vector<Source>;

  void addRow(const Sources& sources, const OpenDocument& inner, const OpenDocument& outer,
              collections::Vector& rsChkInfo) const;

  collections::DictionaryRef keys_;
  std::array<collections::Decimal, 12> computed_;  // of the pair at work
  Sources row_, mirror_;
};

}  // namespace velmora::settlement
