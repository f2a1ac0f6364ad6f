#pragma once

#include <duckdb.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/duckdb/column_writer.h"
#include "platform/ado/duckdb/session_state.h"
#include "velmora/ado/provider.h"

namespace velmora::ado::embedded {

/// Bulk load of one table in a transaction of its own. Columns that are not named take
/// their default, an identity column the next numbers in the order of the rows; numbers
/// given for it must be new. While it is open its connection runs nothing else.
class TableAppender final : public BulkInsert {
 public:
  /// Raises for a table or column that is not there, for a view, for a permanent table
  /// of a connection that only reads, within a transaction, and while another bulk
  /// insert is open.
  TableAppender(std::shared_ptr<SessionState> state, std::string_view table,
                std::span<const std::string> columns);
  TableAppender(const TableAppender&) = delete;
  TableAppender& operator=(const TableAppender&) = delete;
  ~TableAppender() override;

  void append(const Variant& value) override;
  void append(std::int64_t value) override { append(Variant(value)); }
  void append(std::string_view text) override;
  void append(const collections::Decimal& value) override { append(Variant(value)); }
  void append(collections::Date value) override { append(Variant(value)); }
  void appendNull() override { append(Variant(collections::Null{})); }
  void endRow() override;
  void finish() override;

 private:
  struct Default {
    std::string sql;  // a query without FROM of one cell
    tsql::SqlType type;
  };

  const tsql::TableInfo& findTable(std::string_view name);
  void chooseColumns(std::span<const std::string> names);
  void addIdentity();
  void addDefaults();
  bool isChosen(const tsql::ColumnInfo& column) const;
  void openAppender();
  void makeChunk();
  ColumnWriter& currentColumn();
  void flushChunk();
  void writeDefaults();
  void checkGivenNumbers();
  void check(duckdb_state state);
  void close() noexcept;

  std::shared_ptr<SessionState> state_;
  tsql::TableInfo table_;
  std::vector<ColumnWriter> columns_;  // as named; behind them the identity column and defaults
  std::vector<Default> defaults_;      // of the last columns
  std::size_t named_ = 0;
  const tsql::ColumnInfo* givenIdentity_ = nullptr;  // an identity column among the named
  duckdb_appender appender_ = nullptr;
  Chunk chunk_;
  std::size_t next_ = 0;  // column of the current row
  std::size_t rows_ = 0;  // finished rows of the chunk
  bool open_ = false;
  std::optional<BatchStopper::Batch> batch_;  // while it is open
};

}  // namespace velmora::ado::embedded
