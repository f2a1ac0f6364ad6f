#pragma once

#include <string>
#include <vector>

#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/context.h"

namespace velmora::tsql {

/// The query as DuckDB SQL, column n of type types[n]; in any order unless TOP needs one.
std::string queryText(Context& context, const BoundQuery& query, const std::vector<SqlType>& types);
/// The same, rows in the order of ORDER BY or else the natural one.
std::string orderedQueryText(Context& context, const BoundQuery& query,
                             const std::vector<SqlType>& types);
/// With the columns' own types.
std::string orderedQueryText(Context& context, const BoundQuery& query);

}  // namespace velmora::tsql
