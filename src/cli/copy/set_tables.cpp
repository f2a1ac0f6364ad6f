#include "cli/copy/set_tables.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "cli/demo/scripts.h"
#include "cli/failure.h"
#include "velmora/ado/data_type.h"
#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

using Columns = std::vector<ado::FieldDefinition>;

/// Schema's example of a table of a user's own item class.
constexpr const char* kItemClassExample = "t_Item_3001";

Columns columnsOf(ado::Connection& connection, const std::string& table) {
  const auto rows = connection.Execute("select * from " + table + " where 1 = 0");
  Columns columns;
  for (std::size_t i = 0; i < rows->fieldCount(); ++i) columns.push_back(rows->definition(i));
  return columns;
}

bool has(const Columns& columns, const std::string& name) {
  return std::ranges::any_of(columns, [&](const ado::FieldDefinition& column) {
    return collections::equalsIgnoringCase(column.name, name);
  });
}

/// Names by their lower-cased form, hence in order.
using Names = std::map<std::string, std::string>;

Names namesIn(ado::Connection& connection, const std::string& query) {
  Names names;
  const auto rows = connection.Execute(query);
  for (; !rows->EOF_(); rows->MoveNext()) {
    const std::string name = rows->GetValue(0).toText();
    names.emplace(collections::lowerCased(name), name);
  }
  return names;
}

Names tablesOf(ado::Connection& connection) {
  return namesIn(connection, "select name from sysobjects where xtype = 'U'");
}

bool mayBeMissing(const std::string& table) {
  return table == "t_AccessSwitch" || table == "t_AccessRule" || table == kItemClassExample;
}

SetTable schemaTable(ado::Connection& source, ado::Connection& model, const std::string& name) {
  SetTable table{.name = name, .columns = columnsOf(model, name), .ownItemClass = false};
  const Columns there = columnsOf(source, name);
  for (const auto& column : table.columns)
    if (!has(there, column.name))
      throw Failure(fmt::format("the source's table {} has no column {}", name, column.name));
  return table;
}

SetTable ownItemClassTable(ado::Connection& source, const Columns& example,
                           const std::string& name) {
  SetTable table{.name = name, .columns = {}, .ownItemClass = true};
  const Columns there = columnsOf(source, name);
  std::ranges::copy_if(example, std::back_inserter(table.columns),
                       [&](const auto& column) { return has(there, column.name); });
  return table;
}

}  // namespace

std::vector<std::string> SetTable::columnNames() const {
  std::vector<std::string> names;
  for (const auto& column : columns) names.push_back(column.name);
  return names;
}

std::string ownItemClassSql(const SetTable& table) {
  return fmt::format("select {} into {} from {} where 1 = 0", fmt::join(table.columnNames(), ", "),
                     table.name, kItemClassExample);
}

std::vector<SetTable> makeTables(ado::Connection& source, ado::Connection& model) {
  demo::runScripts(model, demo::schemaScripts());
  const Names schema = tablesOf(model), there = tablesOf(source);
  for (const auto& [lowered, name] : schema)
    if (!there.contains(lowered) && !mayBeMissing(name))
      throw Failure("the source has no table " + name);
  std::vector<SetTable> tables;
  for (const auto& [lowered, name] : schema)
    if (there.contains(lowered)) tables.push_back(schemaTable(source, model, name));

  const Columns example = columnsOf(model, kItemClassExample);
  for (const auto& [lowered, ignored] :
       namesIn(source, "select FSqlTableName from t_ItemClass where FSqlTableName <> ''")) {
    const auto found = there.find(lowered);
    if (schema.contains(lowered) || found == there.end()) continue;
    SetTable table = ownItemClassTable(source, example, found->second);
    if (table.columns.empty()) continue;
    model.Execute(ownItemClassSql(table));
    tables.push_back(std::move(table));
  }
  return tables;
}

void readInPieces(ado::Connection& source, const SetTable& table, std::int64_t rows,
                  std::int64_t pieceRows, const std::function<void(const ado::Rowset&)>& take) {
  const std::string query =
      fmt::format("select {} from {}", fmt::join(table.columnNames(), ", "), table.name);
  const auto read = [&](const std::string& condition) {
    take(source.provider().execute(query + condition, {}).at(0).rows);
  };
  if (rows == 0) return;
  if (rows <= pieceRows || kindOf(table.columns[0].type) != ado::DataKind::integer) return read("");
  const std::string& first = table.columns[0].name;
  const auto range = source.Execute(
      fmt::format("select min({0}) as FFirst, max({0}) as FLast from {1}", first, table.name));
  const std::int64_t from = range->GetValue(0).toInt64(), to = range->GetValue(1).toInt64();
  const std::int64_t pieces = (rows + pieceRows - 1) / pieceRows;
  const std::int64_t width = (to - from) / pieces + 1;
  for (std::int64_t start = from; start <= to; start += width)
    read(fmt::format(" where {0} >= {1} and {0} < {2}", first, start, start + width));
}

}  // namespace velmora::cli
