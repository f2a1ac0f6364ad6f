#include "platform/ado/duckdb/engine.h"

#include "platform/ado/duckdb/engine_error.h"

namespace velmora::ado::embedded {

std::int64_t Result::rowsChanged() {
  if (duckdb_result_return_type(result_) == DUCKDB_RESULT_TYPE_CHANGED_ROWS)
    return static_cast<std::int64_t>(duckdb_rows_changed(&result_));
  // CREATE TABLE ... AS answers its count as a row.
  const bool created = duckdb_result_statement_type(result_) == DUCKDB_STATEMENT_TYPE_CREATE;
  if (!created || rowCount() != 1) return -1;
  const auto chunk = next();
  return *static_cast<const std::int64_t*>(
      duckdb_vector_get_data(duckdb_data_chunk_get_vector(chunk.get(), 0)));
}

std::size_t Result::columnCount() const {
  return duckdb_column_count(&result_);
}

std::string Result::columnName(std::size_t column) const {
  return duckdb_column_name(&result_, column);
}

LogicalType Result::columnType(std::size_t column) const {
  return LogicalType(duckdb_column_logical_type(&result_, column));
}

std::size_t Result::rowCount() const {
  return duckdb_row_count(&result_);
}

Session::Session(duckdb_database database) : stopper_(kSource) {
  if (duckdb_connect(database, &connection_) != DuckDBSuccess)
    throwError("The database accepts no further connection.");
}

Result Session::run(const std::string& sql) {
  stopper_.throwIfStopped();
  duckdb_result raw{};
  const auto executed = duckdb_query(connection_, sql.c_str(), &raw);
  Result result(raw, stopper_);
  if (executed == DuckDBSuccess) return result;
  stopper_.throwIfStopped();
  throwEngineError(duckdb_result_error(&raw));
}

// Stopped in between, the engine might have committed what its caller then takes for undone.
void Session::commit() {
  const auto turn = stopper_.withoutInterrupts();
  run("commit");
}

void Session::rollback() noexcept {
  duckdb_result ignored{};
  duckdb_query(connection_, "rollback", &ignored);
  duckdb_destroy_result(&ignored);
}

}  // namespace velmora::ado::embedded
