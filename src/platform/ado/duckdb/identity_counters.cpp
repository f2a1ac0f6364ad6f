#include "platform/ado/duckdb/identity_counters.h"

#include <algorithm>
#include <array>

#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/rows.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::ado::embedded {

namespace {

const tsql::IdentityColumn& numbering(const tsql::TableInfo& table) {
  const auto* column = identityColumn(table);
  if (!column) throwError("Table " + table.name + " has no identity column.");
  return *column->identity;
}

std::int64_t firstFree(Session& session, const tsql::TableInfo& table) {
  const auto& [seed, increment] = numbering(table);
  const std::string furthest = increment > 0 ? "max" : "min";
  auto result = session.run("select cast(" + furthest + "(" +
                            tsql::quoteName(identityColumn(table)->nameInEngine()) +
                            ") as bigint) from " + table.engineName);
  const std::array types{tsql::SqlType::of(tsql::SqlKind::bigInt)};
  const auto cells = readCells(result, types);
  return cells.front().isNull() ? seed : cells.front().toInt64() + increment;
}

}  // namespace

std::int64_t IdentityCounters::next(Session& session, const tsql::TableInfo& table) {
  const auto found = next_.find(table.name);
  if (found != next_.end()) return found->second;
  return next_[table.name] = firstFree(session, table);
}

void IdentityCounters::advance(const tsql::TableInfo& table, std::int64_t rows) {
  const auto found = next_.find(table.name);
  if (found != next_.end()) found->second += rows * numbering(table).increment;
}

void IdentityCounters::restart(const tsql::TableInfo& table) {
  next_[table.name] = numbering(table).seed;
}

void IdentityCounters::forget(std::string_view table) {
  if (const auto found = next_.find(table); found != next_.end()) next_.erase(found);
}

const tsql::ColumnInfo* identityColumn(const tsql::TableInfo& table) {
  const auto found = std::ranges::find_if(
      table.columns, [](const tsql::ColumnInfo& column) { return column.identity.has_value(); });
  return found == table.columns.end() ? nullptr : &*found;
}

}  // namespace velmora::ado::embedded
