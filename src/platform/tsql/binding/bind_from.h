#pragma once

#include <string>
#include <vector>

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast_query.h"

namespace velmora::tsql {

/// A bound FROM clause (without the word FROM).
struct BoundFrom {
  std::string sql;
  /// Its sources one by one and all conditions of its inner joins.
  std::vector<std::string> relations;
  std::vector<BoundCondition> conditions;
  bool inner = true;  ///< no outer joins: the sources and conditions alone say the same
};

/// FROM: adds the sources to the scope.
BoundFrom bindFrom(Context& context, QueryScope& scope, const std::vector<TableSourcePtr>& from);

}  // namespace velmora::tsql
