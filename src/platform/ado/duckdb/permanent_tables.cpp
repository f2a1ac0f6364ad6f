#include "platform/ado/duckdb/permanent_tables.h"

namespace velmora::ado::embedded {

std::shared_ptr<const TableMap> PermanentTables::snapshot() {
  const std::lock_guard lock(mutex_);
  if (tables_) return tables_;
  // A session of its own: the caller's may be in a transaction that sees an older state.
  Session session(database_);
  auto tables = std::make_shared<TableMap>(loadTables(session));
  for (auto& [name, table] : *tables) {
    auto numbered = std::make_shared<tsql::TableInfo>(*table);
    numbered->objectId = objectIdLocked(name);
    table = std::move(numbered);
  }
  return tables_ = std::move(tables);
}

void PermanentTables::add(const TablePtr& table) {
  const std::lock_guard lock(mutex_);
  if (!tables_) return;
  auto tables = std::make_shared<TableMap>(*tables_);
  (*tables)[table->name] = table;
  tables_ = std::move(tables);
}

void PermanentTables::remove(std::string_view name) {
  const std::lock_guard lock(mutex_);
  if (!tables_) return;
  auto tables = std::make_shared<TableMap>(*tables_);
  if (const auto found = tables->find(name); found != tables->end()) tables->erase(found);
  tables_ = std::move(tables);
}

void PermanentTables::forget() {
  const std::lock_guard lock(mutex_);
  tables_.reset();
}

std::int64_t PermanentTables::objectId(std::string_view name) {
  const std::lock_guard lock(mutex_);
  return objectIdLocked(name);
}

std::int64_t PermanentTables::objectIdLocked(std::string_view name) {
  const auto next = static_cast<std::int64_t>(objectIds_.size()) + 1;
  return objectIds_.try_emplace(std::string(name), next).first->second;
}

}  // namespace velmora::ado::embedded
