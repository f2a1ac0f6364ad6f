#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora::closing {

/// What the query builders read from the caller's filter, and the pieces of T-SQL that
/// all of them share.
struct QueryFilter {
  explicit QueryFilter(const collections::Dictionary& filter);

  bool bArp;        ///< receivables, else payables
  bool upToPeriod;  ///< bCheckPassed: every period up to this one
  bool bothSides;   ///< bShowAll
  std::string year, period;
  std::string language;
  std::int32_t currency;
  std::string itemFilter;

  /// "1" for receivables, "0" for payables, as the documents' FRP columns hold it.
  const char* side() const noexcept { return bArp ? "1" : "0"; }

  /// A message in the caller's language, as a text literal.
  std::string literal(std::string_view message) const;
  /// The column of t_rp_billtype with the document type's name in that language.
  std::string nameColumn() const;

  /// The documents (alias v1) of the period or, where asked for, up to it.
  std::string periodCondition() const;
  /// The documents (alias v1) of the period alone.
  std::string singlePeriodCondition() const;

  /// The caller's condition together with the currency's (alias t10); may be empty.
  std::string effectiveFilter() const;
  /// The same as a further condition of a WHERE clause.
  std::string andEffectiveFilter() const;
  /// The join that lets the caller's condition name the item of `customerColumn` (alias
  /// t1); empty without a condition.
  std::string itemJoin(std::string_view customerColumn) const;
};

}  // namespace velmora::closing
