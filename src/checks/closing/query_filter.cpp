#include "checks/closing/query_filter.h"

#include "common/localized_field_name.h"
#include "common/messages.h"
#include "common/sql_lines.h"

namespace velmora::closing {

std::string QueryFilter::literal(std::string_view message) const {
  return quoted(LoadMessage(message, language()));
}

std::string QueryFilter::nameColumn() const {
  return LocalizedFieldName("Fname", language());
}

std::string QueryFilter::periodCondition() const {
  if (!upToPeriod()) return "(v1.FYear = " + year() + " and v1.FPeriod = " + period() + ")";
  return "( (v1.FYear = " + year() + " and v1.FPeriod <=" + period() + " ) or v1.FYear < " +
         year() + " )";
}

std::string QueryFilter::singlePeriodCondition() const {
  return " (v1.FYear = " + year() + " and v1.FPeriod = " + period() + ")";
}

std::string QueryFilter::effectiveFilter() const {
  const std::string items = itemFilter();
  const std::int32_t currency = filter_.Value("CurrencyID").toInt32();
  if (currency < 1) return items;
  return items + (items.empty() ? "" : " and ") + " t10.FCurrencyID = " + std::to_string(currency);
}

std::string QueryFilter::andEffectiveFilter() const {
  const std::string condition = effectiveFilter();
  return condition.empty() ? condition : " and " + condition;
}

std::string QueryFilter::itemJoin(std::string_view customerColumn) const {
  if (itemFilter().empty()) return {};
  return " inner join t_item t1 on (" + std::string(customerColumn) + " = t1.FItemID)";
}

}  // namespace velmora::closing
