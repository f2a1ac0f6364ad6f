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
constexpr std::string_view kDefault = " default ";

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

std::string kept(const tsql::TableInfo& table, const tsql::ColumnInfo& column) {
  std::string text = tsql::declaration(column.type);
  if (column.identity)
    text += " identity(" + std::to_string(column.identity->seed) + "," +
            std::to_string(column.identity->increment) + ")";
  if (isKey(table, column)) text += " primary key";
  if (!column.defaultText.empty()) text.append(kDefault).append(column.defaultText);
  return text;
}

/// Adds the column that a kept declaration tells.
void addKept(tsql::TableInfo& table, tsql::ColumnInfo column, std::string_view declaration) {
  // The default comes last and is read where it is used.
  if (const auto place = declaration.find(kDefault); place != std::string_view::npos) {
    column.defaultText = declaration.substr(place + kDefault.size());
    declaration = declaration.substr(0, place);
  }
  const auto batch = tsql::parse("create table t(c " + std::string(declaration) + ")");
  const auto& created = std::get<tsql::CreateTableStatement>(batch.statements.front().node);
  const auto& definition = created.columns.front();
  column.type = tsql::sqlType(definition.type);
  if (definition.identity)
    column.identity =
        tsql::IdentityColumn{definition.identity->seed, definition.identity->increment};
  if (definition.primaryKey) table.primaryKey.push_back(column.name);
  table.columns.push_back(std::move(column));
}

/// One declaration that says nothing known must not close the whole file.
bool tryAddKept(tsql::TableInfo& table, const tsql::ColumnInfo& column,
                std::string_view declaration) {
  try {
    addKept(table, column, declaration);
    return true;
  } catch (const com::Error&) {
    return false;
  }
}

void addColumn(tsql::TableInfo& table, tsql::ColumnInfo column, std::string_view engineType,
               std::string_view comment) {
  if (comment.starts_with(kMark) && tryAddKept(table, column, comment.substr(kMark.size()))) return;
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
  enum { table, column, type, comment, nullable, fallback, view, query };
  const auto rows = readTexts(session, R"(
select table_name, column_name, data_type, coalesce(c.comment, ''),
       cast(is_nullable as varchar), coalesce(column_default, ''),
       cast(v.view_name is not null as varchar), coalesce(v.comment, '')
  from duckdb_columns() c left join duckdb_views() v
       on v.view_name = c.table_name and v.schema_name = 'main' and not v.internal
 where c.schema_name = 'main' and not c.internal
 order by lower(table_name), column_index)",
                              8);
  for (const auto& row : rows) {
    auto& info = tables[std::string(row[table].text())];
    if (!info) {
      info = std::make_shared<tsql::TableInfo>();
      info->name = row[table].text();
      info->engineName = tsql::engineTableName(info->name);
      info->isView = row[view].text() == "true";
      if (row[query].text().starts_with(kMark))
        info->viewText = row[query].text().substr(kMark.size());
    }
    tsql::ColumnInfo loaded;
    loaded.engineName = row[column].text();
    loaded.name = tsql::columnNameOf(loaded.engineName);
    loaded.nullable = row[nullable].text() == "true";
    loaded.engineDefault = row[fallback].text();
    addColumn(*info, std::move(loaded), row[type].text(), row[comment].text());
  }
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
    std::string comment(kMark);
    comment.append("(").append(tsql::join(columns, ", ")).append(")");
    statements.push_back("comment on index main." + tsql::quoteName(table.name + "." + index.name) +
                         " is " + tsql::quoteText(comment));
  }
  return statements;
}

std::vector<std::string> recordingSql(const tsql::TableInfo& table) {
  std::vector<std::string> statements;
  for (const auto& column : table.columns) {
    const bool told = nearestType(tsql::engineType(column.type)) == column.type;
    if (told && !column.identity && !isKey(table, column) && column.defaultText.empty()) continue;
    statements.push_back("comment on column " + table.engineName + "." +
                         tsql::quoteName(column.nameInEngine()) + " is " +
                         tsql::quoteText(std::string(kMark) + kept(table, column)));
  }
  if (!table.viewText.empty()) {
    statements.push_back("comment on view " + table.engineName + " is " +
                         tsql::quoteText(std::string(kMark) + table.viewText));
  }
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
