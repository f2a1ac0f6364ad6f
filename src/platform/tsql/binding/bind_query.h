#pragma once

#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast_query.h"

namespace velmora::tsql {

/// Binds a whole query; `outer` is the query around it, if any.
BoundQuery bindQuery(Context& context, const QueryScope* outer, const Query& query);

}  // namespace velmora::tsql
