#include "platform/tsql/binding/order_rules.h"

#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/names/unique_match.h"

namespace velmora::tsql {
namespace {

std::string ascending(const std::string& sql) {
  return sql + " ASC NULLS FIRST";
}

}  // namespace

std::string orderTerm(const Bound& value, bool descending) {
  if (descending) return keySql(value) + " DESC NULLS LAST";
  return ascending(keySql(value));
}

std::vector<std::string> naturalOrder(const QueryScope& scope,
                                      const std::vector<TableSourcePtr>& from,
                                      const ExpressionPtr& where) {
  std::vector<std::string> terms;
  for (const auto& [source, columns] : decidingSources(scope, from, where)) {
    if (source->table != nullptr) terms.push_back(ascending(source->engine + ".rowid"));
    for (const SourceColumn* column : columns)
      terms.push_back(orderTerm(computed(source->columnSql(*column), column->type), false));
  }
  return terms;
}

std::vector<std::string> groupOrder(const QueryScope& scope, bool rollup) {
  std::vector<std::string> terms;
  for (const GroupKey& key : scope.keys) {
    if (rollup) terms.push_back("grouping(" + key.groupSql + ")");
    terms.push_back(ascending(key.groupSql));
  }
  return terms;
}

bool comesInOrder(const QueryScope& scope) {
  if (scope.grouped) return scope.keys.empty();
  return scope.sources.empty() ||
         (scope.sources.size() == 1 && scope.sources.front().table != nullptr);
}

}  // namespace velmora::tsql
