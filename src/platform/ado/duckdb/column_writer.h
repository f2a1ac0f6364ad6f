#pragma once

#include <cstddef>
#include <duckdb.h>
#include <string>
#include <string_view>

#include "platform/tsql/binding/names/catalog.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado::embedded {

/// Writes values into one column of the engine's chunks.
class ColumnWriter {
 public:
  /// `table` is for messages.
  ColumnWriter(const std::string& table, const tsql::ColumnInfo& column);

  /// As the engine names it.
  const std::string& column() const noexcept { return column_; }
  /// Where the next rows go: a column of a chunk, of the engine's `type`.
  void aim(duckdb_vector vector, duckdb_logical_type type);

  /// Converts to the column's type. Raises kAdoDataConversion naming table and column
  /// for a value that does not fit it.
  void write(std::size_t row, const Variant& value);
  void write(std::size_t row, std::string_view text);

 private:
  template <class Raw>
  void put(std::size_t row, Raw value) {
    static_cast<Raw*>(data_)[row] = value;
  }
  void putCell(std::size_t row, const Variant& cell);
  void putInteger(std::size_t row, std::int64_t value);
  void putDecimal(std::size_t row, const collections::Decimal& value);
  void putText(std::size_t row, std::string_view text);
  [[noreturn]] void fail(const std::string& problem) const;

  std::string column_;
  FieldDefinition field_;  // its name is "table.column", for messages
  duckdb_vector vector_ = nullptr;
  void* data_ = nullptr;
  duckdb_type physical_ = DUCKDB_TYPE_INVALID;
};

}  // namespace velmora::ado::embedded
