#pragma once

#include <cstdint>
#include <optional>

#include "platform/ado/duckdb/connection_catalog.h"
#include "platform/ado/duckdb/decimal_functions.h"
#include "platform/ado/duckdb/engine.h"
#include "platform/ado/duckdb/instance_cache.h"

namespace velmora::ado::embedded {

/// What belongs to one connection and lasts from batch to batch.
struct SessionState {
  explicit SessionState(const Settings& settings)
      : instance(settings),
        session(instance->handle()),
        catalog(session, instance->tables()),
        functions(session),
        readOnly(settings.readOnly()) {}

  InstanceShare instance;
  Session session;
  ConnectionCatalog catalog;
  DecimalFunctions functions;
  bool readOnly;
  bool noCount = false;  ///< SET NOCOUNT ON
  bool bulkInsertOpen = false;
  int transactions = 0;  ///< BEGIN TRANSACTION less COMMIT
  int lastError = 0;     ///< of the statement before
  /// The last identity number of the last insert, and of the last insert into a table with one.
  std::optional<std::int64_t> lastIdentity;
  std::optional<std::int64_t> scopeIdentity;
};

/// The T-SQL transaction of a connection; nested ones only count.
void beginTransaction(SessionState& state);
/// Raises 3902 without a transaction.
void commitTransaction(SessionState& state);
/// Ends all of them; raises 3903 without a transaction.
void rollbackTransaction(SessionState& state);

}  // namespace velmora::ado::embedded
