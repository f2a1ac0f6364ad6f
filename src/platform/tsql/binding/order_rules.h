#pragma once

#include <string>
#include <vector>

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast.h"

namespace velmora::tsql {

/// "key ASC NULLS FIRST" or "key DESC NULLS LAST": NULL is the lowest value.
std::string orderTerm(const Bound& value, bool descending);

/// The order that rows come in without an ORDER BY, as ORDER BY terms; it also decides
/// among rows that an ORDER BY leaves equal, so that the same data always gives the same
/// rows in the same order:
/// - grouped: by the keys; with rollup each group's rows, then its subtotal;
/// - otherwise by the row numbers of the stored tables in the order of FROM, then by the
///   columns of its derived tables or, where known, their keys; what follows from the rows
///   before is left out.
std::vector<std::string> naturalOrder(const QueryScope& scope,
                                      const std::vector<TableSourcePtr>& from,
                                      const ExpressionPtr& where);
/// The same of a grouped query.
std::vector<std::string> groupOrder(const QueryScope& scope, bool rollup);

/// Whether the natural order needs no sorting: the rows of at most one stored table come
/// as they were stored.
bool comesInOrder(const QueryScope& scope);

}  // namespace velmora::tsql
