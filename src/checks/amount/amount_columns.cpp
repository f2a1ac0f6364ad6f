#include "checks/amount/amount_columns.h"

namespace velmora::amount {

std::vector<std::string> amountColumns(std::string_view measure) {
  std::vector<std::string> columns;
  for (const char* side : {"FArp", "FGL", "FDiff"})
    for (const char* currency : {"AmountFor", "Amount"})
      columns.push_back(std::string(side).append(measure).append(currency));
  return columns;
}

std::vector<std::string> amountColumns(bool withMovements) {
  std::vector<std::string> columns = amountColumns(kBalance);
  if (withMovements)
    for (const std::string_view measure : kMovements)
      for (std::string& column : amountColumns(measure)) columns.push_back(std::move(column));
  return columns;
}

std::string columnList(const std::vector<std::string>& columns, std::string_view before,
                       std::string_view after) {
  std::string list;
  for (const std::string& column : columns) {
    if (!list.empty()) list += ", ";
    list.append(before).append(column).append(after);
  }
  return list;
}

}  // namespace velmora::amount
