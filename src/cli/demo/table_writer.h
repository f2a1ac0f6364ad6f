#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/demo/money.h"
#include "velmora/ado/provider.h"

namespace velmora::cli::demo {

/// Adds rows to one table. Rows are held back and stored in batches, so that many
/// tables can be written to in turn although a connection loads one at a time.
class TableWriter {
 public:
  /// Columns that are not named keep their defaults.
  TableWriter(ado::ProviderConnection& connection, std::string table,
              std::initializer_list<std::string> columns)
      : connection_(connection), table_(std::move(table)), columns_(columns) {}

  /// Adds a row: one value a column, an Amount filling two, nullptr or an empty optional
  /// for NULL.
  template <class... Values>
  void row(const Values&... values) {
    (append(values), ...);
    endRow();
  }
  /// Stores the rows held back.
  void store();

 private:
  enum class Kind : std::uint8_t { kNull, kInteger, kDecimal, kDate, kText };

  struct Cell {
    Kind kind = Kind::kNull;
    std::uint8_t scale = 0;    ///< of a decimal
    std::uint32_t length = 0;  ///< of a text
    std::int64_t value = 0;    ///< a text's place among the texts
  };

  void append(int value) { cells_.push_back({.kind = Kind::kInteger, .value = value}); }
  void append(Money value) {
    cells_.push_back({.kind = Kind::kDecimal, .scale = 2, .value = value.cents});
  }
  void append(Amount value) {
    append(value.original);
    append(value.local);
  }
  void append(Currency currency) {
    cells_.push_back({.kind = Kind::kDecimal, .scale = 4, .value = currency.rate});
  }
  void append(collections::Date value) {
    cells_.push_back({.kind = Kind::kDate, .value = value.microseconds()});
  }
  void append(std::string_view text);
  void append(std::nullptr_t) { cells_.push_back({}); }
  void append(std::optional<int> value) { value ? append(*value) : append(nullptr); }
  void endRow();
  void storeCell(ado::BulkInsert& bulk, const Cell& cell) const;

  ado::ProviderConnection& connection_;
  std::string table_;
  std::vector<std::string> columns_;
  std::vector<Cell> cells_;
  std::string texts_;
};

}  // namespace velmora::cli::demo
