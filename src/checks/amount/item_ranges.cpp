#include "checks/amount/item_ranges.h"

#include "frame/call/text.h"

namespace velmora::amount {

namespace {

struct NumberRange {
  const char *name, *column;
};

constexpr NumberRange kRanges[] = {
    {"Item", "t10.FNumber"}, {"Dpt", "t2.FNumber"}, {"Emp", "t3.FNumber"}};

void addBound(std::string& condition, const char* column, const char* comparison,
              const std::string& number) {
  if (number.empty()) return;
  if (!condition.empty()) condition += " and ";
  condition.append(column).append(" ").append(comparison).append("'");
  condition.append(trimmed(number)).append("'");
}

}  // namespace

void writeNumberRanges(collections::Dictionary& dFilter) {
  for (const auto& [name, column] : kRanges) {
    const std::string key = name;
    std::string condition;
    addBound(condition, column, ">=", dFilter.Value("B" + key + "Number").toText());
    addBound(condition, column, "<=", dFilter.Value("E" + key + "Number").toText());
    dFilter.Set("b" + key + "Filter", !condition.empty());
    dFilter.Set("str" + key + "Filter", condition);
  }
}

}  // namespace velmora::amount
