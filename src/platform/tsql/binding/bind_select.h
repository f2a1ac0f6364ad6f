#pragma once

#include <vector>

#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast_query.h"

namespace velmora::tsql {

/// Binds one SELECT with the ORDER BY of its query; the scope takes its sources.
BoundSelect bindSelect(Context& context, QueryScope& scope, const Select& select,
                       const std::vector<OrderItem>& orderBy);

}  // namespace velmora::tsql
