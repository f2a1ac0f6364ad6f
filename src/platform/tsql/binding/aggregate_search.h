#pragma once

#include <string_view>

#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// sum, avg, min, max, count and grouping.
bool isAggregate(std::string_view name);

/// Whether an aggregate stands in it. Those of subqueries belong to the subqueries and do
/// not count.
bool containsAggregate(const Expression& expression);

}  // namespace velmora::tsql
