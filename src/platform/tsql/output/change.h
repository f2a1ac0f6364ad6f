#pragma once

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_from.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/output/action.h"
#include "platform/tsql/syntax/ast.h"

namespace velmora::tsql {

Change translateInsert(Context& context, const InsertStatement& statement);
Change translateUpdate(Context& context, const UpdateStatement& statement);
Change translateDelete(Context& context, const DeleteStatement& statement);
Change translateTruncate(Context& context, const TruncateStatement& statement);

/// Raises when the table may not be changed: a view, or a permanent table while the
/// database is open for reading only.
void requireChangeable(Context& context, const TableInfo& table, Position position);

/// The column of that name; raises 207.
const ColumnInfo& requireColumn(const TableInfo& table, std::string_view name, Position position);

/// Raises 271 for a computed column, which takes no value.
void requireStored(const ColumnInfo& column, Position position);

/// Makes the statement answer the rows of OUTPUT; `names` are the rows it knows, "inserted"
/// or "deleted".
void addOutput(Context& context, Change& change, const TableInfo& table,
               const std::vector<SelectItem>& items, const std::vector<std::string>& names);

/// TOP of a change; nothing without it. Raises 1060.
std::optional<std::int64_t> changeTop(ExpressionBinder& binder, const ExpressionPtr& top);

/// The target of UPDATE or DELETE among the sources of its FROM clause, which it joins
/// when it is not named there.
struct ChangeTarget {
  Position position;
  const TableInfo* table = nullptr;
  const Source* source = nullptr;
  BoundFrom from;
};
ChangeTarget bindTarget(Context& context, QueryScope& scope, const QualifiedName& target,
                        const std::vector<TableSourcePtr>& from);

/// What tells the rows of the target apart. Refuses a table with a column that hides the
/// engine's row numbers, which only other programs make.
std::string rowNumberSql(const ChangeTarget& target);

}  // namespace velmora::tsql
