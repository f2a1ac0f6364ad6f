#include "platform/tsql/binding/names/system_views.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

const SqlType kName = SqlType::nvarchar(128);
const SqlType kObjectType{SqlKind::character, 0, 0, 2};

SystemView viewOf(std::vector<SourceColumn> columns, const std::vector<std::string>& rows) {
  std::vector<std::string> names;
  std::vector<std::string> casts;
  for (const SourceColumn& column : columns) {
    names.push_back(quoteName(column.name));
    casts.push_back(castSql(names.back(), column.type).append(" AS ").append(names.back()));
  }
  std::vector<std::string> nulls(columns.size(), "NULL");
  std::string sql = "SELECT " + join(casts, ", ") + " FROM (VALUES ";
  sql += rows.empty() ? "(" + join(nulls, ", ") + ")" : join(rows, ", ");
  sql += ") AS v(" + join(names, ", ") + ")";
  if (rows.empty()) sql += " WHERE FALSE";
  return {std::move(sql), std::move(columns)};
}

SystemView objects(Catalog& catalog) {
  std::vector<std::string> rows;
  for (const TableInfo* table : catalog.tables()) {
    if (table->temporary) continue;
    const std::string type = table->isView ? "'V '" : "'U '";
    const std::string cells[] = {quoteText(table->name), std::to_string(table->objectId), type,
                                 type};
    rows.push_back("(" + join(cells, ", ") + ")");
  }
  return viewOf({{"name", kName, false},
                 {"id", SqlType::integer(), false},
                 {"xtype", kObjectType, false},
                 {"type", kObjectType, false}},
                rows);
}

SystemView columns(Catalog& catalog) {
  std::vector<std::string> rows;
  for (const TableInfo* table : catalog.tables()) {
    if (table->temporary) continue;
    int number = 0;
    for (const ColumnInfo& column : table->columns) {
      const auto size = fieldDefinition(column.name, column.type).definedSize;
      rows.push_back("(" + quoteText(column.name) + ", " + std::to_string(table->objectId) + ", " +
                     std::to_string(++number) + ", " + std::to_string(size) + ", " +
                     (column.nullable ? "1" : "0") + ")");
    }
  }
  return viewOf({{"name", kName, false},
                 {"id", SqlType::integer(), false},
                 {"colid", SqlType::of(SqlKind::smallInt), false},
                 {"length", SqlType::of(SqlKind::smallInt), false},
                 {"isnullable", SqlType::integer(), false}},
                rows);
}

struct NamedView {
  std::string_view name;
  SystemView (*make)(Catalog& catalog);
};

constexpr auto kViews =
    std::to_array<NamedView>({{"sysobjects", objects}, {"syscolumns", columns}});

}  // namespace

bool isSystemView(std::string_view name) {
  return std::ranges::any_of(kViews,
                             [&](const NamedView& view) { return sameName(view.name, name); });
}

std::optional<SystemView> systemView(std::string_view name, Catalog& catalog) {
  for (const NamedView& view : kViews) {
    if (sameName(view.name, name)) return view.make(catalog);
  }
  return std::nullopt;
}

}  // namespace velmora::tsql
