#include "platform/tsql/output/definition.h"

#include <algorithm>

#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_query.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/find_table.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/names/system_views.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/output/action.h"
#include "platform/tsql/output/change.h"
#include "platform/tsql/output/column_default.h"
#include "platform/tsql/output/query_text.h"
#include "platform/tsql/syntax/print.h"

namespace velmora::tsql {
namespace {

/// Raises when an object of that name exists or may not be made.
TableInfo newTable(Context& context, const QualifiedName& name) {
  if (findTable(context, name) != nullptr || isSystemView(name.name)) {
    raiseAt(name.position, 2714,
            "There is already an object named '" + name.name + "' in the database.");
  }
  TableInfo table;
  table.name = name.name;
  table.temporary = name.isTemporary();
  table.engineName = engineTableName(name.name);
  if (context.scope.readOnly && !table.temporary) {
    raiseAt(name.position, 3906,
            "Failed to create '" + name.name + "' because the database is read-only.");
  }
  return table;
}

std::string createWords(const TableInfo& table) {
  return table.temporary ? "CREATE TEMP TABLE " : "CREATE TABLE ";
}

std::string indexName(const TableInfo& table, std::string_view name) {
  return quoteName(table.name + "." + std::string(name));
}

std::string anyValue(const SqlType& type) {
  if (type.isText()) return "''";
  return castSql(type.isDate() ? "'2000-01-01'" : "0", type);
}

/// A unique index; texts that differ in case or trailing blanks are the same key, and one row
/// at most has none.
std::string uniqueIndexSql(const TableInfo& table, const UniqueIndex& index) {
  std::vector<std::string> keys;
  for (const std::string& column : index.columns) {
    const ColumnInfo& info = requireColumn(table, column, {});
    const std::string key = keySql(computed(quoteName(info.nameInEngine()), info.type));
    // The engine lets any number of rows without a value stand beside each other.
    keys.push_back(info.nullable ? "(coalesce(" + key + ", " + anyValue(info.type) + "))"
                                 : "(" + key + ")");
    if (info.nullable) keys.push_back("(" + quoteName(info.nameInEngine()) + " IS NULL)");
  }
  return "CREATE UNIQUE INDEX " + indexName(table, index.name) + " ON " + table.engineName + " (" +
         join(keys, ", ") + ")";
}

/// Whether the numbering alone keeps the key unique.
bool isNumbered(const TableInfo& table, const std::vector<std::string>& columns) {
  return columns.size() == 1 && requireColumn(table, columns.front(), {}).identity.has_value();
}

/// Whether a key's texts must be compared by their own rules.
bool hasText(const TableInfo& table, const std::vector<std::string>& columns) {
  return std::ranges::any_of(columns, [&](const std::string& column) {
    return requireColumn(table, column, {}).type.isText();
  });
}

BoundQuery refuseQuery(Context& /*context*/, const QueryScope* /*outer*/, const Query& query) {
  raiseAt(query.body.position, 1046,
          "Subqueries are not allowed in this context. Only scalar expressions are allowed.");
}

constexpr QueryStages kRowAlone{refuseQuery, nullptr};

/// The time or a session's numbers would be those of the table's creation.
void requireLasting(const Expression& expression) {
  if (dependsOnMoment(expression)) {
    refuse(expression.position, "a check or computed column that depends on time or session");
  }
}

/// Binds one CREATE TABLE.
class TableBinder {
 public:
  TableBinder(Context& context, const CreateTableStatement& statement, bool variable)
      : context_(context), statement_(statement), table_(newTable(context, statement.table)) {
    if (variable != statement.table.name.starts_with('@')) {
      refuse(statement.table.position, "a table named '" + statement.table.name + "'");
    }
  }

  CreateTable bind() {
    for (const ColumnDefinition& definition : statement_.columns) addColumn(definition);
    for (const KeyConstraint& key : statement_.keys) addKey(key);
    const QueryScope row = rowScope();
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
      lines.push_back(columnSql(statement_.columns[i], table_.columns[i], row));
    }
    addChecks(lines, row);
    if (!declaredKey_.empty()) lines.push_back("PRIMARY KEY (" + declaredKey_ + ")");
    std::vector<std::string> sql = {createWords(table_) + table_.engineName + " (" +
                                    join(lines, ", ") + ")"};
    for (const UniqueIndex& key : table_.uniqueIndexes) sql.push_back(uniqueIndexSql(table_, key));
    return {std::move(table_), std::move(sql)};
  }

 private:
  void addColumn(const ColumnDefinition& definition) {
    checkNew(definition);
    ColumnInfo column;
    column.name = definition.name;
    column.engineName = engineColumnName(definition.name);
    column.computed = definition.computed != nullptr;
    if (column.computed) {
      table_.columns.push_back(std::move(column));
      return;
    }
    column.type = sqlType(definition.type);
    column.nullable = definition.nullable.value_or(!definition.primaryKey && !definition.identity);
    if (definition.identity) column.identity = identityOf(definition);
    if (definition.defaultValue) {
      checkDefault(context_, table_, column, *definition.defaultValue);
      column.defaultText = print(*definition.defaultValue);
    }
    table_.columns.push_back(std::move(column));
    if (definition.primaryKey) makePrimary({definition.name}, definition.position);
    if (definition.unique) addUnique({definition.name});
  }

  void checkNew(const ColumnDefinition& definition) const {
    const auto same = [&](const ColumnInfo& column) {
      return sameName(column.name, definition.name);
    };
    if (std::ranges::any_of(table_.columns, same)) {
      raiseAt(definition.position, 2705,
              "Column name '" + definition.name + "' in table '" + table_.name +
                  "' is specified more than once.");
    }
  }

  static IdentityColumn identityOf(const ColumnDefinition& definition) {
    if (definition.identity->increment == 0) {
      raiseAt(definition.position, 2749, "The increment of an identity column must not be 0.");
    }
    return {definition.identity->seed, definition.identity->increment};
  }

  void addKey(const KeyConstraint& key) {
    std::vector<std::string> columns;
    for (const IndexColumn& column : key.columns) {
      columns.push_back(requireColumn(table_, column.name, key.position).name);
    }
    if (key.primary) {
      makePrimary(std::move(columns), key.position);
    } else {
      addUnique(std::move(columns));
    }
  }

  void addUnique(std::vector<std::string> columns) {
    const std::string number = std::to_string(table_.uniqueIndexes.size() + 1);
    table_.uniqueIndexes.push_back({"key" + number, std::move(columns)});
  }

  void makePrimary(std::vector<std::string> columns, Position position) {
    if (!table_.primaryKey.empty()) {
      raiseAt(position, 8110,
              "Cannot add multiple PRIMARY KEY constraints to table '" + table_.name + "'.");
    }
    for (ColumnInfo& column : table_.columns) {
      if (std::ranges::find(columns, column.name) != columns.end()) column.nullable = false;
    }
    table_.primaryKey = columns;
    if (isNumbered(table_, columns)) return;
    if (hasText(table_, columns)) {
      addUnique(std::move(columns));
    } else {
      declaredKey_ = keyList(columns);
    }
  }

  std::string keyList(const std::vector<std::string>& columns) const {
    std::vector<std::string> names;
    names.reserve(columns.size());
    for (const std::string& column : columns) {
      names.push_back(quoteName(requireColumn(table_, column, {}).nameInEngine()));
    }
    return join(names, ", ");
  }

  /// The row's columns as checks and computed columns name them.
  QueryScope rowScope() const {
    QueryScope scope;
    scope.aggregatesAllowed = false;
    scope.windowsAllowed = false;
    Source row;
    row.alias = table_.name;
    for (const ColumnInfo& column : table_.columns) {
      if (!column.computed)
        row.columns.push_back({column.name, column.type, column.nullable, column.engineName});
    }
    scope.sources.push_back(std::move(row));
    return scope;
  }

  /// Binds an expression that the table keeps: it sees the row and nothing of the batch.
  template <class Bind>
  auto kept(const Expression& expression, Bind bind) {
    requireLasting(expression);
    const Scope seen = definitionScope(context_.scope);
    Context own(seen, kRowAlone);
    auto bound = bind(own);
    for (const DecimalFunction& function : own.functions) context_.require(function);
    // A permanent table outlives the functions that one connection asked for.
    if (!table_.temporary && !own.functions.empty()) {
      refuse(expression.position, "a check that divides decimals in a permanent table");
    }
    return bound;
  }

  void addChecks(std::vector<std::string>& lines, QueryScope row) {
    const auto add = [&](const ExpressionPtr& check) {
      const auto broken = kept(
          *check, [&](Context& own) { return ExpressionBinder(own, row).bindOpposite(*check); });
      lines.push_back("CHECK (" + broken.sql + " IS NOT TRUE)");  // unknown passes
      table_.hasChecks = true;
    };
    for (const ColumnDefinition& column : statement_.columns) {
      for (const ExpressionPtr& check : column.checks) add(check);
    }
    for (const ExpressionPtr& check : statement_.checks) add(check);
  }

  std::string computedSql(const ColumnDefinition& definition, ColumnInfo& column, QueryScope row) {
    // A file tells the type of such a column, but not that it takes no values.
    if (!table_.temporary) refuse(definition.position, "a computed column of a permanent table");
    const Bound value = kept(*definition.computed, [&](Context& own) {
      return ExpressionBinder(own, row).bind(*definition.computed);
    });
    column.type = value.type.kind == SqlKind::untypedNull ? SqlType::integer() : value.type;
    return quoteName(column.nameInEngine()) + " " + engineType(column.type) +
           " GENERATED ALWAYS AS (" + exactSql(value) + ") VIRTUAL";
  }

  std::string columnSql(const ColumnDefinition& definition, ColumnInfo& column,
                        const QueryScope& row) {
    if (column.computed) return computedSql(definition, column, row);
    std::string sql = quoteName(column.nameInEngine()) + " " + engineType(column.type);
    if (!column.nullable) sql += " NOT NULL";
    return sql;
  }

  Context& context_;
  const CreateTableStatement& statement_;
  TableInfo table_;
  std::string declaredKey_;  // of PRIMARY KEY; empty: none, or one of the unique indexes
};

/// The columns a query gives a new table or view; each needs a name of its own.
std::vector<ColumnInfo> newColumns(const BoundQuery& query, const std::vector<std::string>& names,
                                   const std::string& object, Position position) {
  std::vector<ColumnInfo> columns;
  const auto& outputs = columnsOf(query);
  if (!names.empty() && names.size() != outputs.size()) {
    raiseAt(position, 8158, "'" + object + "' has a different number of columns than its list.");
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    ColumnInfo column;
    column.name = names.empty() ? outputs[i].name : names[i];
    column.type = columnType(outputs[i].type);
    column.nullable = outputs[i].nullable;
    column.engineName = engineColumnName(column.name);
    if (column.name.empty()) {
      raiseAt(position, 1038,
              "An object or column name is missing: column " + std::to_string(i + 1) + " of '" +
                  object + "' needs an alias.");
    }
    const auto same = [&](const ColumnInfo& other) { return sameName(other.name, column.name); };
    if (std::ranges::any_of(columns, same)) {
      raiseAt(position, 2705,
              "Column name '" + column.name + "' in '" + object + "' is specified more than once.");
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

std::string quotedNames(const std::vector<ColumnInfo>& columns) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const ColumnInfo& column : columns) names.push_back(quoteName(column.nameInEngine()));
  return join(names, ", ");
}

std::string typedNames(const std::vector<ColumnInfo>& columns) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const ColumnInfo& column : columns) {
    const std::string name = quoteName(column.nameInEngine());
    names.push_back(castSql("q." + name, column.type).append(" AS ").append(name));
  }
  return join(names, ", ");
}

void addDropped(Context& context, DropTables& result, const QualifiedName& name, bool view,
                bool ifExists) {
  const TableInfo* table = findTable(context, name);
  if (table == nullptr || table->isView != view) {
    if (ifExists && table == nullptr) return;
    raiseAt(name.position, 3701,
            std::string("Cannot drop the ") + (view ? "view" : "table") + " '" + name.name +
                "', because it does not exist or you do not have permission.");
  }
  if (!view) requireChangeable(context, *table, name.position);
  result.tables.push_back(table->name);
  result.sql.push_back((view ? "DROP VIEW " : "DROP TABLE ") + table->engineName);
}

/// Rows that are there get the default only where they must have a value.
void addColumn(Context& context, AlterTable& alter, const ColumnDefinition& definition) {
  TableInfo& table = alter.table;
  if (definition.identity || definition.primaryKey || definition.unique || definition.computed ||
      !definition.checks.empty()) {
    refuse(definition.position, "adding a column with a key, check, identity or expression");
  }
  for (const ColumnInfo& column : table.columns) {
    if (!sameName(column.name, definition.name)) continue;
    raiseAt(definition.position, 2705,
            "Column names in each table must be unique. Column name '" + definition.name +
                "' in table '" + table.name + "' is specified more than once.");
  }
  ColumnInfo column;
  column.name = definition.name;
  column.type = sqlType(definition.type);
  column.nullable = definition.nullable.value_or(true);
  column.engineName = engineColumnName(definition.name);
  if (definition.defaultValue) {
    checkDefault(context, table, column, *definition.defaultValue);
    column.defaultText = print(*definition.defaultValue);
  }
  const std::string words = "ALTER TABLE " + table.engineName;
  const std::string name = quoteName(column.nameInEngine());
  const std::string added = words + " ADD COLUMN " + name + " " + engineType(column.type);
  if (column.nullable) {
    alter.sql.push_back(added);
  } else {
    const auto value = constantDefaultSql(context, table, column);
    if (!value) refuse(definition.position, "adding a not null column with a computed default");
    alter.sql.push_back(added + " DEFAULT " + *value);
    alter.sql.push_back(words + " ALTER COLUMN " + name + " SET NOT NULL");
    alter.sql.push_back(words + " ALTER COLUMN " + name + " DROP DEFAULT");
  }
  table.columns.push_back(std::move(column));
}

void dropColumn(AlterTable& alter, const QualifiedName& name) {
  TableInfo& table = alter.table;
  const ColumnInfo& info = requireColumn(table, name.name, name.position);
  const std::string column = info.name;
  const std::string engineName = info.nameInEngine();
  const auto inKey = [&](const std::vector<std::string>& key) {
    return std::ranges::find(key, column) != key.end();
  };
  if (inKey(table.primaryKey) || table.columns.size() == 1) {
    raiseAt(name.position, 4922,
            "ALTER TABLE DROP COLUMN " + column +
                " failed because one or more objects access this column.");
  }
  std::erase_if(table.columns, [&](const ColumnInfo& one) { return one.name == column; });
  alter.sql.push_back("ALTER TABLE " + table.engineName + " DROP COLUMN " + quoteName(engineName));
}

}  // namespace

CreateTable translateCreateTable(Context& context, const CreateTableStatement& statement,
                                 bool variable) {
  return TableBinder(context, statement, variable).bind();
}

AlterTable translateAlterTable(Context& context, const AlterTableStatement& statement) {
  const TableInfo& table = requireTable(context, statement.table);
  requireChangeable(context, table, statement.table.position);
  // After a crash the engine cannot repeat it: it binds the checks before it knows a function.
  if (table.hasChecks && !table.temporary) {
    refuse(statement.table.position, "altering a table with a check");
  }
  AlterTable alter{table, {}};
  // The engine changes no table with an index on it, nor drops the index in one go.
  if (!table.uniqueIndexes.empty()) {
    refuse(statement.table.position, "altering a table with a unique index or a key of texts");
  }
  for (const ColumnDefinition& definition : statement.added) addColumn(context, alter, definition);
  for (const QualifiedName& name : statement.dropped) dropColumn(alter, name);
  return alter;
}

CreateTable translateCreateView(Context& context, const CreateViewStatement& statement) {
  TableInfo view = newTable(context, statement.view);
  if (view.temporary) refuse(statement.view.position, "a temporary view");
  view.isView = true;
  // It outlives the batch and its variables.
  const Scope scope = definitionScope(context.scope);
  Context own(scope, context.queries);
  const BoundQuery query = bindQuery(own, nullptr, *statement.query);
  for (const auto& [table, uses] : own.tableUses) {
    if (table->temporary) {
      raiseAt(statement.view.position, 4508,
              "Views are not allowed on temporary tables, such as '" + table->name + "'.");
    }
  }
  view.columns = newColumns(query, statement.columns, view.name, statement.view.position);
  view.viewText = print(*statement.query);
  // The engine keeps comments for columns by the names that the query gives them.
  const std::string sql = "CREATE VIEW " + view.engineName + " AS SELECT * FROM (" +
                          queryText(own, query, typesOf(query)) + ") AS q(" +
                          quotedNames(view.columns) + ")";
  for (const DecimalFunction& function : own.functions) context.require(function);
  return {std::move(view), {sql}};
}

SelectInto translateSelectInto(Context& context, const Query& query, const QualifiedName& into) {
  const BoundQuery bound = bindQuery(context, nullptr, query);
  TableInfo table = newTable(context, into);
  table.columns = newColumns(bound, {}, table.name, into.position);
  std::string sql = createWords(table) + table.engineName + " AS SELECT " +
                    typedNames(table.columns) + " FROM (" + orderedQueryText(context, bound) +
                    ") AS q(" + quotedNames(table.columns) + ")";
  return {std::move(table), std::move(sql)};
}

DropTables translateDropTable(Context& context, const DropTableStatement& statement) {
  DropTables result;
  for (const QualifiedName& name : statement.tables) {
    addDropped(context, result, name, false, statement.ifExists);
  }
  return result;
}

DropTables translateDropView(Context& context, const DropViewStatement& statement) {
  DropTables result;
  for (const QualifiedName& name : statement.views) {
    addDropped(context, result, name, true, statement.ifExists);
  }
  return result;
}

IndexChange translateCreateIndex(Context& context, const CreateIndexStatement& statement) {
  const TableInfo& table = requireTable(context, statement.table);
  requireChangeable(context, table, statement.table.position);
  std::vector<std::string> columns;
  for (const IndexColumn& column : statement.columns) {
    columns.push_back(requireColumn(table, column.name, statement.table.position).name);
  }
  const auto taken = [&](const UniqueIndex& index) { return sameName(index.name, statement.name); };
  if (std::ranges::any_of(table.uniqueIndexes, taken)) {
    raiseAt(statement.table.position, 1913,
            "The operation failed because an index with name '" + statement.name +
                "' already exists on table '" + table.name + "'.");
  }
  if (!statement.unique) return {};
  IndexChange change{{}, table};
  change.table->uniqueIndexes.push_back({statement.name, std::move(columns)});
  change.sql.push_back(uniqueIndexSql(table, change.table->uniqueIndexes.back()));
  return change;
}

IndexChange translateDropIndex(Context& context, const DropIndexStatement& statement) {
  const TableInfo& table = requireTable(context, statement.table);
  requireChangeable(context, table, statement.table.position);
  const std::string schema = table.temporary ? "temp." : "main.";
  IndexChange change{{"DROP INDEX IF EXISTS " + schema + indexName(table, statement.name)}, table};
  std::erase_if(change.table->uniqueIndexes,
                [&](const UniqueIndex& index) { return sameName(index.name, statement.name); });
  return change;
}

}  // namespace velmora::tsql
