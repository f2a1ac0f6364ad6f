#pragma once

#include <string>
#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora::closing {

/// The caller's filter, each key read when a builder needs it, and the pieces of T-SQL
/// that the builders share.
class QueryFilter {
 public:
  /// `filter` has to outlive this.
  explicit QueryFilter(const collections::Dictionary& filter) : filter_(filter) {}

  /// Receivables, else payables.
  bool bArp() const { return filter_.Value("bArp").toBool(); }
  /// bCheckPassed: every period up to this one.
  bool upToPeriod() const { return filter_.Value("bCheckPassed").toBool(); }
  bool bothSides() const { return filter_.Value("bShowAll").toBool(); }
  std::string year() const { return number("BYear"); }
  std::string period() const { return number("BPeriod"); }
  std::string localDecimal() const { return number("LocalDecimal"); }
  std::string language() const { return filter_.Value("strLanguage").toText(); }

  /// "1" for receivables, "0" for payables, as the documents' FRP columns hold it.
  const char* side() const { return bArp() ? "1" : "0"; }

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

 private:
  std::string itemFilter() const { return filter_.Value("ItemFilter").toText(); }
  std::string number(std::string_view key) const {
    return std::to_string(filter_.Value(key).toInt32());
  }

  const collections::Dictionary& filter_;
};

}  // namespace velmora::closing
