#include "platform/ado/duckdb/connection_catalog.h"

namespace velmora::ado::embedded {

namespace {

const tsql::TableInfo* find(const TableMap& tables, std::string_view name) {
  const auto found = tables.find(name);
  return found == tables.end() ? nullptr : found->second.get();
}

void erase(TableMap& tables, std::string_view name) {
  if (const auto found = tables.find(name); found != tables.end()) tables.erase(found);
}

bool isTemporary(std::string_view name) {
  return name.starts_with('#') || name.starts_with('@');
}

}  // namespace

void ConnectionCatalog::beginStatement() {
  snapshot_.reset();
}

void ConnectionCatalog::endStatement() noexcept {
  if (identityLock_.owns_lock()) identityLock_.unlock();
}

const TableMap& ConnectionCatalog::permanentTables() {
  if (uncommitted_) return *uncommitted_;
  if (!snapshot_) snapshot_ = permanent_.snapshot();
  return *snapshot_;
}

TableMap& ConnectionCatalog::changedPermanentTables() {
  if (!uncommitted_) uncommitted_ = std::make_unique<TableMap>(permanentTables());
  return *uncommitted_;
}

const tsql::TableInfo* ConnectionCatalog::findTable(std::string_view name) {
  return find(isTemporary(name) ? temporary_ : permanentTables(), name);
}

std::vector<const tsql::TableInfo*> ConnectionCatalog::tables() {
  std::vector<const tsql::TableInfo*> all;
  for (const auto& [name, table] : permanentTables()) all.push_back(table.get());
  for (const auto& [name, table] : temporary_)
    if (name.starts_with('#')) all.push_back(table.get());
  return all;
}

void ConnectionCatalog::created(tsql::TableInfo table) {
  table.objectId = table.temporary ? --lastTemporaryId_ : permanent_.objectId(table.name);
  const auto made = std::make_shared<const tsql::TableInfo>(std::move(table));
  put(made);
  if (identityColumn(*made)) restartNumbers(*made);
}

void ConnectionCatalog::altered(tsql::TableInfo table) {
  put(std::make_shared<const tsql::TableInfo>(std::move(table)));
}

void ConnectionCatalog::put(const TablePtr& table) {
  if (table->temporary) {
    temporary_[table->name] = table;
  } else if (inTransaction_) {
    changedPermanentTables()[table->name] = table;
  } else {
    permanent_.add(table);
  }
}

void ConnectionCatalog::dropped(std::string_view name) {
  if (const auto* table = findTable(name)) {
    lockIdentities(*table);
    countersOf(*table).forget(name);
  }
  if (isTemporary(name))
    erase(temporary_, name);
  else if (inTransaction_)
    erase(changedPermanentTables(), name);
  else
    permanent_.remove(name);
}

void ConnectionCatalog::lockIdentities(const tsql::TableInfo& table) {
  if (table.temporary || identityLock_.owns_lock()) return;
  identityLock_ = std::unique_lock(permanent_.identityMutex());
}

IdentityCounters& ConnectionCatalog::countersOf(const tsql::TableInfo& table) {
  return table.temporary ? temporaryCounters_ : permanent_.identityCounters();
}

std::int64_t ConnectionCatalog::nextIdentity(const tsql::TableInfo& table) {
  lockIdentities(table);
  return countersOf(table).next(session_, table);
}

void ConnectionCatalog::identitiesUsed(std::string_view name, std::int64_t rows) {
  const auto* table = findTable(name);
  lockIdentities(*table);
  countersOf(*table).advance(*table, rows);
}

void ConnectionCatalog::identitiesRestart(std::string_view name) {
  restartNumbers(*findTable(name));
}

void ConnectionCatalog::restartNumbers(const tsql::TableInfo& table) {
  lockIdentities(table);
  countersOf(table).restart(table);
  if (inTransaction_) restarted_.push_back(table.name);
}

void ConnectionCatalog::forgetIdentities(const tsql::TableInfo& table) {
  lockIdentities(table);
  countersOf(table).forget(table.name);
}

std::int64_t ConnectionCatalog::takeIdentity(const tsql::TableInfo& table) {
  const CatalogStatement statement(*this);
  const auto value = nextIdentity(table);
  countersOf(table).advance(table, 1);
  return value;
}

void ConnectionCatalog::beginTransaction() {
  inTransaction_ = true;
  temporaryBefore_ = temporary_;
}

void ConnectionCatalog::commitTransaction() {
  inTransaction_ = false;
  temporaryBefore_.clear();
  if (uncommitted_) permanent_.forget();
  uncommitted_.reset();
  restarted_.clear();
}

void ConnectionCatalog::rollbackTransaction() {
  inTransaction_ = false;
  temporary_ = std::move(temporaryBefore_);
  temporaryBefore_.clear();
  uncommitted_.reset();
  // The rows are back, so the numbers follow what the tables hold.
  const std::lock_guard lock(permanent_.identityMutex());
  for (const auto& name : restarted_) {
    permanent_.identityCounters().forget(name);
    temporaryCounters_.forget(name);
  }
  restarted_.clear();
}

}  // namespace velmora::ado::embedded
