#include "checks/closing/query_filter.h"

#include "common/localized_field_name.h"
#include "common/messages.h"
#include "common/sql_lines.h"

namespace velmora::closing {

QueryFilter::QueryFilter(const collections::Dictionary& filter)
    : bArp(filter.Value("bArp").toBool()),
      upToPeriod(filter.Value("bCheckPassed").toBool()),
      bothSides(filter.Value("bShowAll").toBool()),
      year(std::to_string(filter.Value("BYear").toInt32())),
      period(std::to_string(filter.Value("BPeriod").toInt32())),
      language(filter.Value("strLanguage").toText()),
      currency(filter.Value("CurrencyID").toInt32()),
      itemFilter(filter.Value("ItemFilter").toText()) {}

std::string QueryFilter::literal(std::string_view message) const {
  return quoted(LoadMessage(message, language));
}

std::string QueryFilter::nameColumn() const {
  return LocalizedFieldName("Fname", language);
}

std::string QueryFilter::periodCondition() const {
  if (upToPeriod)
    return "( (v1.FYear = " + year + " and v1.FPeriod <=" + period + " ) or v1.FYear < " + year +
           " )";
  return "(v1.FYear = " + year + " and v1.FPeriod = " + period + ")";
}

std::string QueryFilter::singlePeriodCondition() const {
  return " (v1.FYear = " + year + " and v1.FPeriod = " + period + ")";
}

std::string QueryFilter::effectiveFilter() const {
  if (currency < 1) return itemFilter;
  const std::string currencyCondition = " t10.FCurrencyID = " + std::to_string(currency);
  return itemFilter.empty() ? currencyCondition : itemFilter + " and " + currencyCondition;
}

std::string QueryFilter::andEffectiveFilter() const {
  const std::string condition = effectiveFilter();
  return condition.empty() ? condition : " and " + condition;
}

std::string QueryFilter::itemJoin(std::string_view customerColumn) const {
  if (itemFilter.empty()) return {};
  return " inner join t_item t1 on (" + std::string(customerColumn) + " = t1.FItemID)";
}

}  // namespace velmora::closing
