#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/duckdb/permanent_tables.h"
#include "platform/tsql/binding/names/catalog.h"

namespace velmora::ado::embedded {

/// The tables one connection sees: the permanent ones, its own temporary ones, and in a
/// transaction what it has created or dropped itself.
class ConnectionCatalog final : public tsql::Catalog {
 public:
  ConnectionCatalog(Session& session, PermanentTables& permanent)
      : session_(session), permanent_(permanent) {}

  const tsql::TableInfo* findTable(std::string_view name) override;
  std::int64_t nextIdentity(const tsql::TableInfo& table) override;
  std::vector<const tsql::TableInfo*> tables() override;

  /// Between the two the tables stay the same, and so do the numbers of an identity
  /// column of a permanent table that was asked for.
  void beginStatement();
  void endStatement() noexcept;

  void created(tsql::TableInfo table);
  void dropped(std::string_view name);
  /// `table` has other indexes than before.
  void altered(tsql::TableInfo table);
  /// `rows` numbers of the table's identity column are used up.
  void identitiesUsed(std::string_view table, std::int64_t rows);
  void identitiesRestart(std::string_view table);
  /// Numbering goes on behind what the table holds then.
  void forgetIdentities(const tsql::TableInfo& table);
  /// Takes the next number of the table's identity column.
  std::int64_t takeIdentity(const tsql::TableInfo& table);

  void beginTransaction();
  void commitTransaction();
  void rollbackTransaction();

 private:
  const TableMap& permanentTables();
  TableMap& changedPermanentTables();
  void lockIdentities(const tsql::TableInfo& table);
  IdentityCounters& countersOf(const tsql::TableInfo& table);
  void restartNumbers(const tsql::TableInfo& table);
  void put(const TablePtr& table);

  Session& session_;
  PermanentTables& permanent_;
  std::shared_ptr<const TableMap> snapshot_;  // of this statement
  std::unique_lock<std::mutex> identityLock_;

  TableMap temporary_;
  IdentityCounters temporaryCounters_;
  std::int64_t lastTemporaryId_ = 0;

  bool inTransaction_ = false;
  std::unique_ptr<TableMap> uncommitted_;  // permanent tables with this transaction's changes
  TableMap temporaryBefore_;               // as they were when the transaction began
  std::vector<std::string> restarted_;     // tables whose numbering the transaction restarted
};

/// A statement's stay in the catalogue.
class CatalogStatement {
 public:
  explicit CatalogStatement(ConnectionCatalog& catalog) : catalog_(catalog) {
    catalog_.beginStatement();
  }
  CatalogStatement(const CatalogStatement&) = delete;
  CatalogStatement& operator=(const CatalogStatement&) = delete;
  ~CatalogStatement() { catalog_.endStatement(); }

 private:
  ConnectionCatalog& catalog_;
};

}  // namespace velmora::ado::embedded
