#pragma once

#include <cstddef>
#include <cstdint>
#include <duckdb.h>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/ado/batch_stopper.h"

namespace velmora::ado::embedded {

// The engine's handles, each owned by one object. Whatever fails raises the com::Error
// of engine_error.h.

struct HandleDeleter {
  void operator()(duckdb_data_chunk chunk) const noexcept { duckdb_destroy_data_chunk(&chunk); }
  void operator()(duckdb_logical_type type) const noexcept { duckdb_destroy_logical_type(&type); }
  void operator()(duckdb_config config) const noexcept { duckdb_destroy_config(&config); }
  void operator()(duckdb_scalar_function function) const noexcept {
    duckdb_destroy_scalar_function(&function);
  }
};

template <class Handle>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, HandleDeleter>;
using Chunk = Owned<duckdb_data_chunk>;
using LogicalType = Owned<duckdb_logical_type>;
using Config = Owned<duckdb_config>;
using ScalarFunction = Owned<duckdb_scalar_function>;

/// A statement's whole answer.
class Result {
 public:
  /// Reading it is part of the batch that `stopper`, which outlives it, may stop.
  Result(duckdb_result result, const BatchStopper& stopper) noexcept
      : result_(result), stopper_(stopper) {}
  Result(Result&& other) noexcept
      : result_(std::exchange(other.result_, {})), stopper_(other.stopper_) {}
  Result& operator=(Result&&) = delete;
  ~Result() { duckdb_destroy_result(&result_); }

  bool hasRows() const {
    return duckdb_result_return_type(result_) == DUCKDB_RESULT_TYPE_QUERY_RESULT;
  }
  /// Rows that the statement changed or put into a new table; -1 for a statement that
  /// changes no rows by its nature.
  std::int64_t rowsChanged();
  std::size_t columnCount() const;
  std::string columnName(std::size_t column) const;
  LogicalType columnType(std::size_t column) const;
  /// Rows of the whole answer.
  std::size_t rowCount() const;
  /// The next chunk of rows; nothing at the end.
  Chunk next() {
    stopper_.throwIfStopped();
    return Chunk(duckdb_fetch_chunk(result_));
  }

 private:
  mutable duckdb_result result_;
  const BatchStopper& stopper_;
};

/// One connection to an engine instance: its transaction and its temporary tables.
class Session {
 public:
  explicit Session(duckdb_database database);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() { duckdb_disconnect(&connection_); }

  duckdb_connection handle() const noexcept { return connection_; }
  /// Runs one statement, unless the batch was asked to end.
  Result run(const std::string& sql);
  /// Commits the open transaction; a batch is stopped before that or after it.
  void commit();
  /// Ends the open transaction; nothing happens when the engine has ended it already.
  void rollback() noexcept;

  BatchStopper& stopper() noexcept { return stopper_; }
  /// What interrupts its statements.
  BatchStopper::Interrupt interrupt() {
    return [this] { duckdb_interrupt(connection_); };
  }

 private:
  duckdb_connection connection_ = nullptr;
  BatchStopper stopper_;
};

}  // namespace velmora::ado::embedded
