#include "platform/ado/duckdb/table_declarations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <optional>
#include <string_view>

#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/rows.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/parser.h"
#include "platform/tsql/syntax/print.h"
#include "velmora/com/error.h"

namespace velmora::ado::embedded {

namespace {

using tsql::SqlKind;
using tsql::SqlType;

constexpr std::string_view kMark = "T-SQL: ";

/// Precision and scale of "DECIMAL(28,4)".
std::optional<SqlType> decimalType(std::string_view engineType) {
  constexpr std::string_view start = "DECIMAL(";
  if (!engineType.starts_with(start)) return std::nullopt;
  int precision = 0;
  int scale = 0;
  const char* end = engineType.data() + engineType.size();
  const auto comma = std::from_chars(engineType.data() + start.size(), end, precision);
  if (comma.ec != std::errc() || *comma.ptr != ',') return std::nullopt;
  if (std::from_chars(comma.ptr + 1, end, scale).ec != std::errc()) return std::nullopt;
  return SqlType::decimal(precision, scale);
}

/// The T-SQL type nearest to the engine's; nullopt when there is none.
std::optional<SqlType> nearestType(std::string_view engineType) {
  struct Pair {
    std::string_view engine;
    SqlType type;
  };
  static const std::array pairs{
      Pair{"VARCHAR", SqlType::nvarchar(SqlType::kMaxLength)},
      Pair{"INTEGER", SqlType::integer()},
      Pair{"BIGINT", SqlType::of(SqlKind::bigInt)},
      Pair{"TIMESTAMP", SqlType::dateTime()},
      Pair{"DATE", SqlType::of(SqlKind::date)},
      Pair{"DOUBLE", SqlType::floating()},
      Pair{"FLOAT", SqlType::of(SqlKind::real)},
      Pair{"SMALLINT", SqlType::of(SqlKind::smallInt)},
      Pair{"TINYINT", SqlType::of(SqlKind::smallInt)},
      Pair{"UTINYINT", SqlType::of(SqlKind::tinyInt)},
      Pair{"USMALLINT", SqlType::integer()},
      Pair{"UINTEGER", SqlType::of(SqlKind::bigInt)},
      Pair{"HUGEINT", SqlType::decimal(38, 0)},
      Pair{"BOOLEAN", SqlType::bit()},
      Pair{"TIMESTAMP_S", SqlType::dateTime()},
      Pair{"TIMESTAMP_MS", SqlType::dateTime()},
  };
  const auto found = std::ranges::find(pairs, engineType, &Pair::engine);
  return found != pairs.end() ? found->type : decimalType(engineType);
}

bool isKey(const tsql::TableInfo& table, const tsql::ColumnInfo& column) {
  return std::ranges::find(table.primaryKey, column.name) != table.primaryKey.end();
}

/// The column's name in T-SQL.
std::string nameSql(const tsql::ColumnInfo& column) {
  return tsql::print(tsql::QualifiedName{{}, {}, column.name});
}

std::string kept(const tsql::TableInfo& table, const tsql::ColumnInfo& column) {
  std::string text = tsql::declaration(column.type);
  if (column.identity)
    text += " identity(" + std::to_string(column.identity->seed) + "," +
            std::to_string(column.identity->increment) + ")";
  if (isKey(table, column)) text += " primary key";
  if (!column.defaultText.empty()) text += " default " + column.defaultText;
  return text;
}

void declare(tsql::TableInfo& table, tsql::ColumnInfo column,
             const tsql::ColumnDefinition& definition) {
  column.type = tsql::sqlType(definition.type);
  if (definition.identity)
    column.identity =
        tsql::IdentityColumn{definition.identity->seed, definition.identity->increment};
  if (definition.defaultValue) column.defaultText = tsql::print(*definition.defaultValue);
  if (definition.primaryKey) table.primaryKey.push_back(column.name);
  table.columns.push_back(std::move(column));
}

using Definitions = std::map<std::string, tsql::ColumnDefinition, tsql::IgnoreCase>;

/// The column definitions of a list, by name; none when it says something unknown, which must
/// not close the whole file.
Definitions definitionsIn(const std::string& columns) {
  Definitions definitions;
  try {
    auto batch = tsql::parse("create table t(" + columns + ")");
    auto& created = std::get<tsql::CreateTableStatement>(batch.statements.front().node);
    for (auto& column : created.columns) {
      tsql::sqlType(column.type);
      definitions[column.name] = std::move(column);
    }
  } catch (const com::Error&) {
    definitions.clear();
  }
  return definitions;
}

/// What a comment of ours says; empty for others.
std::string keptText(std::string_view comment) {
  return std::string(comment.starts_with(kMark) ? comment.substr(kMark.size()) : "");
}

void addColumn(tsql::TableInfo& table, tsql::ColumnInfo column, std::string_view engineType,
               const Definitions& definitions) {
  if (const auto kept = definitions.find(column.name); kept != definitions.end())
    return declare(table, std::move(column), kept->second);
  const auto type = nearestType(engineType);
  if (!type) return;
  column.type = *type;
  table.columns.push_back(std::move(column));
}

using LoadedTables = std::map<std::string, std::shared_ptr<tsql::TableInfo>, tsql::IgnoreCase>;

/// The session sees the engine's own tables only, since its views of the catalogue name one
/// another without a schema: a table of the same name would stand in for them.
void hideTables(Session& session) {
  session.run("set search_path = 'system'");
}

void loadColumns(Session& session, LoadedTables& tables) {
  enum { table, column, type, comment, nullable, fallback, view, whole, checks };
  const auto rows = readTexts(session, R"(
select c.table_name, column_name, data_type, coalesce(c.comment, ''),
       cast(is_nullable as varchar), coalesce(column_default, ''),
       cast(v.view_name is not null as varchar), coalesce(v.comment, t.comment, ''),
       cast(coalesce(t.check_constraint_count, 0) > 0 as varchar)
  from duckdb_columns() c
       left join duckdb_views() v
       on v.view_name = c.table_name and v.schema_name = 'main' and not v.internal
       left join duckdb_tables() t
       on t.table_name = c.table_name and t.schema_name = 'main' and not t.internal
 where c.schema_name = 'main' and not c.internal
 order by lower(c.table_name), column_index)",
                              9);
  std::map<std::string, Definitions, tsql::IgnoreCase> declared;
  for (const auto& row : rows) {
    const std::string name(row[table].text());
    auto& info = tables[name];
    if (!info) {
      info = std::make_shared<tsql::TableInfo>();
      info->name = name;
      info->engineName = tsql::engineTableName(name);
      info->isView = row[view].text() == "true";
      info->hasChecks = row[checks].text() == "true";
      auto kept = keptText(row[whole].text());
      if (info->isView)
        info->viewText = std::move(kept);
      else if (!kept.empty())
        declared[name] = definitionsIn(kept);
    }
    tsql::ColumnInfo loaded;
    loaded.engineName = row[column].text();
    loaded.name = tsql::columnNameOf(loaded.engineName);
    loaded.nullable = row[nullable].text() == "true";
    loaded.engineDefault = row[fallback].text();
    if (const auto kept = keptText(row[comment].text()); !kept.empty())
      declared[name].merge(definitionsIn(nameSql(loaded) + " " + kept));
    addColumn(*info, std::move(loaded), row[type].text(), declared[name]);
  }
}

std::string commentSql(const std::string& kind, const std::string& name, const std::string& text) {
  return "comment on " + kind + " " + name + " is " + tsql::quoteText(std::string(kMark) + text);
}

/// Adds the index whose columns are kept as `columns`, for instance "(FItemClassID, FNumber)".
void addUniqueIndex(tsql::TableInfo& table, std::string_view name, std::string_view columns) {
  const auto batch = tsql::parse("create unique index i on t " + std::string(columns));
  const auto& created = std::get<tsql::CreateIndexStatement>(batch.statements.front().node);
  tsql::UniqueIndex index{std::string(name), {}};
  for (const auto& column : created.columns) index.columns.push_back(column.name);
  table.uniqueIndexes.push_back(std::move(index));
}

void loadUniqueIndexes(Session& session, LoadedTables& tables) {
  enum { table, index, comment };
  const auto rows = readTexts(session, R"(
select table_name, index_name, comment
  from duckdb_indexes()
 where schema_name = 'main' and is_unique and starts_with(comment, 'T-SQL: ')
 order by lower(table_name), index_oid)",
                              3);
  for (const auto& row : rows) {
    const auto found = tables.find(std::string(row[table].text()));
    if (found == tables.end()) continue;
    // The engine's index is named "table.index".
    addUniqueIndex(*found->second, row[index].text().substr(found->first.size() + 1),
                   row[comment].text().substr(kMark.size()));
  }
}

}  // namespace

std::vector<std::string> indexRecordingSql(const tsql::TableInfo& table) {
  std::vector<std::string> statements;
  for (const auto& index : table.uniqueIndexes) {
    std::vector<std::string> columns;
    for (const auto& column : index.columns)
      columns.push_back(tsql::print(tsql::QualifiedName{{}, {}, column}));
    statements.push_back(commentSql("index",
                                    "main." + tsql::quoteName(table.name + "." + index.name),
                                    "(" + tsql::join(columns, ", ") + ")"));
  }
  return statements;
}

std::vector<std::string> recordingSql(const tsql::TableInfo& table) {
  std::vector<std::string> statements;
  std::string all;
  for (const auto& column : table.columns) {
    const bool told = nearestType(tsql::engineType(column.type)) == column.type;
    if (told && !column.identity && !isKey(table, column) && column.defaultText.empty()) continue;
    const auto text = kept(table, column);
    all.append(all.empty() ? "" : ", ").append(nameSql(column)).append(" ").append(text);
    if (table.hasChecks) continue;
    statements.push_back(commentSql(
        "column", table.engineName + "." + tsql::quoteName(column.nameInEngine()), text));
  }
  if (table.hasChecks && !all.empty())
    statements.push_back(commentSql("table", table.engineName, all));
  if (!table.viewText.empty())
    statements.push_back(commentSql("view", table.engineName, table.viewText));
  std::ranges::move(indexRecordingSql(table), std::back_inserter(statements));
  return statements;
}

TableMap loadTables(Session& session) {
  hideTables(session);
  LoadedTables loaded;
  loadColumns(session, loaded);
  loadUniqueIndexes(session, loaded);
  return {loaded.begin(), loaded.end()};
}

}  // namespace velmora::ado::embedded
