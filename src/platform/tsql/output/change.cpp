#include "platform/tsql/output/change.h"

#include <algorithm>

#include "platform/tsql/binding/aggregate_search.h"
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

void requireStored(const ColumnInfo& column, Position position) {
  if (!column.computed) return;
  raiseAt(position, 271,
          "The column '" + column.name + "' cannot be modified because it is a computed column.");
}

std::optional<std::int64_t> changeTop(ExpressionBinder& binder, const ExpressionPtr& top) {
  if (!top) return std::nullopt;
  const Bound count = binder.bind(*top);
  if (!count.constant || !count.type.isInteger() || count.isNull() ||
      count.constant->toInt64() < 0) {
    raiseAt(top->position, 1060,
            "The number of rows provided for TOP must be an integer of 0 or more.");
  }
  return count.constant->toInt64();
}

namespace {

/// Binds the columns of one OUTPUT; the engine knows one row of the table there.
class OutputBinder {
 public:
  OutputBinder(Context& context, const TableInfo& table, const std::vector<std::string>& names)
      : binder_(context, scope_), names_(names) {
    scope_.aggregatesAllowed = false;
    scope_.windowsAllowed = false;
    for (const std::string& name : names) {
      Source source;
      source.alias = name;
      for (const ColumnInfo& column : table.columns)
        source.columns.push_back({column.name, column.type, column.nullable, column.engineName});
      scope_.sources.push_back(std::move(source));
    }
  }

  void add(const SelectItem& item) {
    if (const auto* star = std::get_if<StarItem>(&item.node)) {
      const QualifiedName name = star->qualifier.value_or(QualifiedName{item.position, {}, ""});
      requireKnown(name.name, item.position);
      for (const SourceColumn& column : scope_.sources.front().columns)
        add(column.name, computed(scope_.sources.front().columnSql(column), column.type));
      return;
    }
    const auto& column = std::get<ColumnItem>(item.node);
    for (const QualifiedName* name : columnsIn(*column.value)) {
      requireKnown(name->qualifiers.empty() ? "" : name->qualifiers.back(), name->position);
    }
    const auto* plain = std::get_if<ColumnReference>(&column.value->node);
    add(column.alias.value_or(plain != nullptr ? plain->column.name : ""),
        binder_.bind(*column.value));
  }

  Rows rows;

 private:
  void requireKnown(const std::string& name, Position position) const {
    for (const std::string& known : names_) {
      if (sameName(known, name)) return;
    }
    refuse(position, "in OUTPUT anything but columns of " + join(names_, " or "));
  }

  void add(std::string name, const Bound& value) {
    SqlType type = value.type;
    if (type.kind == SqlKind::untypedNull) type = SqlType::integer();
    rows.sql += (rows.columns.empty() ? "" : ", ") + exactSql(value);
    rows.columns.push_back({std::move(name), type, true});
  }

  QueryScope scope_;
  ExpressionBinder binder_;
  const std::vector<std::string>& names_;
};

}  // namespace

void addOutput(Context& context, Change& change, const TableInfo& table,
               const std::vector<SelectItem>& items, const std::vector<std::string>& names) {
  if (items.empty()) return;
  OutputBinder binder(context, table, names);
  for (const SelectItem& item : items) binder.add(item);
  change.sql += " RETURNING " + binder.rows.sql;
  change.output = std::move(binder.rows);
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
  Change change;
  change.sql = "DELETE FROM " + table.engineName;
  change.identityReset = numbered ? table.name : "";
  change.counted = false;
  return change;
}

}  // namespace velmora::tsql
