#pragma once

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
};

/// The T-SQL transaction of a connection; nested ones only count.
void beginTransaction(SessionState& state);
/// Raises 3902 without a transaction.
void commitTransaction(SessionState& state);
/// Ends all of them; raises 3903 without a transaction.
void rollbackTransaction(SessionState& state);

}  // namespace velmora::ado::embedded
