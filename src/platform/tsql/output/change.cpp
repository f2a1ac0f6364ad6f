#include "platform/tsql/output/change.h"

#include <algorithm>

#include "platform/tsql/binding/bind_from.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/find_table.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/output/action.h"

namespace velmora::tsql {
namespace {

std::vector<TableSourcePtr> targetAlone(const QualifiedName& target) {
  std::vector<TableSourcePtr> from;
  from.push_back(std::make_unique<TableSource>(
      TableSource{target.position, NamedTable{target, std::nullopt}}));
  return from;
}

const Source* sourceOfTarget(const QueryScope& scope, const QualifiedName& target,
                             const TableInfo* table) {
  if (target.qualifiers.empty()) {
    if (const Source* source = findSource(scope, target.name)) return source;
  }
  if (table == nullptr) return nullptr;
  for (const Source& source : scope.sources) {
    if (source.table == table) return &source;
  }
  return nullptr;
}

}  // namespace

void requireChangeable(Context& context, const TableInfo& table, Position position) {
  if (table.isView) refuse(position, "changing the view '" + table.name + "'");
  if (context.scope.readOnly && !table.temporary) {
    raiseAt(position, 3906,
            "Failed to change '" + table.name + "' because the database is read-only.");
  }
}

const ColumnInfo& requireColumn(const TableInfo& table, std::string_view name, Position position) {
  for (const ColumnInfo& column : table.columns) {
    if (sameName(column.name, name)) return column;
  }
  raiseAt(position, 207, "Invalid column name '" + std::string(name) + "'.");
}

ChangeTarget bindTarget(Context& context, QueryScope& scope, const QualifiedName& target,
                        const std::vector<TableSourcePtr>& from) {
  ChangeTarget result{target.position, nullptr, nullptr, {}};
  if (!from.empty()) result.from = bindFrom(context, scope, from);
  result.source = sourceOfTarget(scope, target, findTable(context, target));
  if (result.source == nullptr) {
    requireTable(context, target);
    const BoundFrom own = bindFrom(context, scope, targetAlone(target));
    result.from.sql = from.empty() ? own.sql : result.from.sql + ", " + own.sql;
    result.from.relations.push_back(own.sql);
    result.source = &scope.sources.back();
  }
  result.table = result.source->table;
  if (result.table == nullptr) {
    refuse(target.position, "changing '" + target.name + "', which is no stored table");
  }
  requireChangeable(context, *result.table, target.position);
  return result;
}

std::string rowNumberSql(const ChangeTarget& target) {
  for (const ColumnInfo& column : target.table->columns) {
    if (hidesRowNumbers(column.nameInEngine())) {
      refuse(target.position,
             "changing some rows of '" + target.table->name + "', whose column '" + column.name +
                 "' stands for the engine's row numbers; copy it with SELECT INTO");
    }
  }
  return target.source->engine + ".rowid";
}

Change translateTruncate(Context& context, const TruncateStatement& statement) {
  const TableInfo& table = requireTable(context, statement.table);
  requireChangeable(context, table, statement.table.position);
  const bool numbered = std::ranges::any_of(
      table.columns, [](const ColumnInfo& column) { return column.identity.has_value(); });
  return {"DELETE FROM " + table.engineName, "", numbered ? table.name : ""};
}

}  // namespace velmora::tsql
