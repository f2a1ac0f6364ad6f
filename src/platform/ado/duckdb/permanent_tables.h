#pragma once

#include <cstdint>
#include <duckdb.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/ado/duckdb/identity_counters.h"
#include "platform/ado/duckdb/table_declarations.h"

namespace velmora::ado::embedded {

/// The permanent tables of an open database, known to all its connections. Thread-safe.
class PermanentTables {
 public:
  explicit PermanentTables(duckdb_database database) : database_(database) {}

  /// The committed tables as of now; read from the database the first time, a few
  /// milliseconds. Later changes make another map.
  std::shared_ptr<const TableMap> snapshot();
  /// A table was created, a dropped one is gone (both committed).
  void add(const TablePtr& table);
  void remove(std::string_view name);
  /// The tables have changed: they are read again at the next use.
  void forget();
  /// The object id of a table of that name: always the same while the database is open.
  std::int64_t objectId(std::string_view name);

  /// Whoever numbers rows holds this from asking for the next value until the rows are
  /// there, so that two connections never take the same.
  std::mutex& identityMutex() noexcept { return identityMutex_; }
  /// Under identityMutex only.
  IdentityCounters& identityCounters() noexcept { return counters_; }

 private:
  std::int64_t objectIdLocked(std::string_view name);

  duckdb_database database_;
  std::mutex mutex_;
  std::shared_ptr<const TableMap> tables_;
  std::map<std::string, std::int64_t, tsql::IgnoreCase> objectIds_;
  std::mutex identityMutex_;
  IdentityCounters counters_;
};

}  // namespace velmora::ado::embedded
