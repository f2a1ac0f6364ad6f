#pragma once

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
  using Order = std::vector<std::size_t>;

  void addRow(const Order& order, collections::Vector& rsChkInfo) const;

  collections::DictionaryRef keys_;
  std::vector<bool> fromFirst_;               // an entry of the copy map: from the first recordset
  std::vector<collections::Variant> values_;  // of the pair at work, in the order of the keys
  Order row_, mirror_;                        // which of the values each key gets
};

}  // namespace velmora::settlement
