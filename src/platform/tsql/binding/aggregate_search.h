#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// sum, avg, min, max, count, string_agg and grouping.
bool isAggregate(std::string_view name);
/// A call of one of them without OVER.
bool isAggregate(const Expression& expression);

/// Whether an aggregate stands in it. Those of subqueries belong to the subqueries and do
/// not count.
bool containsAggregate(const Expression& expression);

/// Whether a query used as a value stands in it.
bool containsSubqueryValue(const Expression& expression);

/// The columns named in it, outside of subqueries.
std::vector<const QualifiedName*> columnsIn(const Expression& expression);

/// Whether the time, or something of the session, stands in it.
bool dependsOnMoment(const Expression& expression);

/// Whether one of the variables stands in it, outside of subqueries.
bool readsVariable(const Expression& expression,
                   const std::set<std::string, IgnoreCase>& variables);

}  // namespace velmora::tsql
