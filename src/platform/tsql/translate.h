#pragma once

#include <vector>

#include "platform/tsql/binding/names/statement_scope.h"
#include "platform/tsql/engine/engine_functions.h"
#include "platform/tsql/output/action.h"
#include "platform/tsql/syntax/ast.h"

namespace velmora::tsql {

struct Translation {
  Action action;
  /// Functions that must be known to DuckDB before the statement runs.
  std::vector<DecimalFunction> functions;
};

/// What `statement` becomes: a query, a change or a definition. Names are resolved
/// here, so this is called when the statement is executed. Flow, variables, options,
/// transactions and print are the caller's; for their expressions see the two functions
/// below.
/// Raises com::Error kProvider, the text beginning with SQL Server's number, for
/// instance "208: Invalid object name 't_x' (line 1, column 15)"; a construct that is
/// not supported is refused with its place.
Translation translate(const Statement& statement, const Scope& scope);

/// The condition of an IF as a query of one row and one cell: 1, or 0 when it is false
/// or unknown (column type bit).
Translation translateCondition(const Expression& condition, const Scope& scope);

/// The value of SET @v = ... as a query of one row and one cell, converted to `type`.
Translation translateValue(const Expression& value, const SqlType& type, const Scope& scope);

/// What a column of `table` takes when nothing is given for it, as a query of one row and one
/// cell without FROM.
Translation translateDefault(const TableInfo& table, const ColumnInfo& column, const Scope& scope);

}  // namespace velmora::tsql
