#pragma once

#include <array>
#include <vector>

#include "settlement/open_documents.h"
#include "velmora/collections/dictionary.h"

namespace velmora::settlement {

/// What one pair settled on one of its two documents, and what that left open.
struct PairAmounts {
  collections::Decimal checkAmountFor, checkAmount, checkQuantity;
  collections::Decimal remainAmountFor, remainAmount, remainQuantity;
};

/// Which document of a pair is used up; the outer one when both are.
enum class UsedUp : std::size_t { inner, outer };

/// Makes the settlement row of a pair and its mirror. All rows with the same document
/// used up share their keys.
class PairRows {
 public:
  /// `singleAmount`: rows carry one amount, which is the local one in the result.
  PairRows(const collections::Dictionary& copyMap, const collections::Dictionary& mirrorMap,
           bool singleAmount, bool withQuantities);

  /// The row of the first recordset's document (`inner`), and the same pair seen from the
  /// second's (`outer`).
  std::array<collections::DictionaryRef, 2> rowsOf(UsedUp usedUp, const PairAmounts& innerAmounts,
                                                   const OpenDocument& inner,
                                                   const PairAmounts& outerAmounts,
                                                   const OpenDocument& outer);

 private:
  /// Where the value under a key comes from.
  struct Source {
    enum class Kind { computed, inner, outer } kind;
    std::size_t index;  ///< of the computed values, else entry of the copy map
  };
  using Sources = std::vector<Source>;

  /// The keys in their order, and where their values come from.
  struct Layout {
    collections::DictionaryRef keys;
    Sources row, mirror;
  };

  static Layout layoutOf(UsedUp usedUp, const collections::Dictionary& copyMap,
                         const collections::Dictionary& mirrorMap, bool singleAmount,
                         bool withQuantities);
  collections::DictionaryRef made(const Layout& layout, const Sources& sources,
                                  const OpenDocument& inner, const OpenDocument& outer) const;

  std::array<Layout, 2> layouts_;                  // by UsedUp
  std::array<collections::Decimal, 12> computed_;  // of the pair at work
};

}  // namespace velmora::settlement
