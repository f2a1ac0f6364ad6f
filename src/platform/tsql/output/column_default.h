#pragma once

#include <optional>
#include <string>

#include "platform/tsql/binding/context.h"
#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// Raises for what cannot be the default of the column: 137 for a variable, 207 for a column,
/// 1046 for a query.
void checkDefault(Context& context, const TableInfo& table, const ColumnInfo& column,
                  const Expression& value);

/// What the column holds when nothing is given for it.
std::string defaultSql(Context& context, const TableInfo& table, const ColumnInfo& column);

/// The same as a constant, which the engine understands while it opens a file, before it knows
/// any function; absent when it is none.
std::optional<std::string> constantDefaultSql(Context& context, const TableInfo& table,
                                              const ColumnInfo& column);

}  // namespace velmora::tsql
