#pragma once

#include <cstddef>

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast_query.h"

namespace velmora::tsql {

/// The ON of an outer join.
struct BoundOn {
  BoundCondition condition;
  /// The engine can hash the condition, or run a query used as a value in it, only as the
  /// WHERE of a query over the side without unmatched rows, for each row of the other (LATERAL).
  bool lateral = false;
};

/// Binds the ON of a left, right or full join so that the engine can hash it. Its left side
/// are the scope's sources from `left`, its right side those from `right` to the last.
///
/// The engine compares all rows with all where ON says something of the kept side alone
/// beside its equalities. That goes into the key: a row that it keeps out has no key, which
/// nothing equals. What all alternatives of an OR have in common stands outside of it.
BoundOn bindOuterJoin(Context& context, QueryScope& scope, const Join& join, std::size_t left,
                      std::size_t right);

}  // namespace velmora::tsql
