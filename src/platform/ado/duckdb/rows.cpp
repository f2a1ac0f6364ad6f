#include "platform/ado/duckdb/rows.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "platform/ado/duckdb/engine_error.h"

namespace velmora::ado::embedded {

namespace {

using collections::Date;
using collections::Decimal;
using collections::int128;
using collections::Null;
using tsql::SqlKind;
using tsql::SqlType;

constexpr std::int64_t kMicrosecondsPerDay = 24LL * 60 * 60 * 1000 * 1000;

/// A column of the result: how the engine holds it, and what its cells shall be.
struct Column {
  duckdb_type physical = DUCKDB_TYPE_INVALID;  // a decimal's is that of its coefficient
  bool isDecimal = false;
  int scale = 0;
  SqlType type;
};

Column describe(const Result& result, std::size_t index, const SqlType& type) {
  const auto logical = result.columnType(index);
  Column column;
  column.type = type;
  column.physical = duckdb_get_type_id(logical.get());
  if (column.physical == DUCKDB_TYPE_DECIMAL) {
    column.isDecimal = true;
    column.scale = duckdb_decimal_scale(logical.get());
    column.physical = duckdb_decimal_internal_type(logical.get());
  }
  return column;
}

/// Some rows of one column of a chunk: where their values are and where the cells go.
struct Slice {
  duckdb_vector vector;
  std::size_t first, rows;
  Variant* cells;
  std::size_t stride;

  /// Writes read(value) for each row, Null where the value is missing.
  template <class Raw, class Read>
  void fill(Read read) const {
    const auto* values = static_cast<const Raw*>(duckdb_vector_get_data(vector));
    auto* validity = duckdb_vector_get_validity(vector);
    for (std::size_t row = first; row < first + rows; ++row) {
      const bool valid = !validity || (validity[row / 64] >> (row % 64) & 1);
      cells[(row - first) * stride] = valid ? read(values[row]) : Variant(Null{});
    }
  }
};

[[noreturn]] void throwUnexpected(const Column& column) {
  throwError("The engine answered a column of type " + std::to_string(column.physical) + " where " +
             tsql::declaration(column.type) + " was expected.");
}

int128 widened(std::int64_t value) {
  return value;
}
int128 widened(const duckdb_hugeint& value) {
  return static_cast<int128>(value.upper) * (static_cast<int128>(1) << 64) +
         static_cast<int128>(value.lower);
}

template <class Raw>
void fillDecimals(const Slice& slice, const Column& column) {
  const int held = column.scale;
  const int wanted = column.type.scale;
  if (held == wanted)
    slice.fill<Raw>(
        [=](const Raw& raw) { return Variant(Decimal::fromCoefficient(widened(raw), held)); });
  else
    slice.fill<Raw>([=](const Raw& raw) {
      return Variant(Decimal::fromCoefficient(widened(raw), held).rescaled(wanted));
    });
}

template <class Raw>
void fillIntegers(const Slice& slice, const Column& column) {
  switch (column.type.kind) {
    case SqlKind::bit:
      return slice.fill<Raw>([](Raw raw) { return Variant(raw != Raw{}); });
    case SqlKind::tinyInt:
    case SqlKind::smallInt:
      return slice.fill<Raw>([](Raw raw) { return Variant(static_cast<std::int16_t>(raw)); });
    case SqlKind::integer:
    case SqlKind::untypedNull:
      return slice.fill<Raw>([](Raw raw) { return Variant(static_cast<std::int32_t>(raw)); });
    case SqlKind::bigInt:
      return slice.fill<Raw>([](Raw raw) { return Variant(static_cast<std::int64_t>(raw)); });
    default:
      throwUnexpected(column);
  }
}

/// Neighbours that are the same text share it: document types, currencies, explanations.
void fillTexts(const Slice& slice) {
  Variant above;
  slice.fill<duckdb_string_t>([&](duckdb_string_t raw) {
    const std::string_view text(duckdb_string_t_data(&raw), duckdb_string_t_length(raw));
    if (!above.isString() || above.text() != text) above = Variant(text);
    return above;
  });
}

void fillTimestamps(const Slice& slice, std::int64_t microseconds) {
  slice.fill<std::int64_t>(
      [=](std::int64_t raw) { return Variant(Date::fromMicroseconds(raw * microseconds)); });
}

template <class Raw>
void fillNumbers(const Slice& slice, const Column& column) {
  if (column.type.isDecimal()) return fillDecimals<Raw>(slice, column);
  fillIntegers<Raw>(slice, column);
}

void fillNumbers(const Slice& slice, const Column& column) {
  switch (column.physical) {
    case DUCKDB_TYPE_BOOLEAN:
      return fillIntegers<bool>(slice, column);
    case DUCKDB_TYPE_TINYINT:
      return fillNumbers<std::int8_t>(slice, column);
    case DUCKDB_TYPE_UTINYINT:
      return fillNumbers<std::uint8_t>(slice, column);
    case DUCKDB_TYPE_SMALLINT:
      return fillNumbers<std::int16_t>(slice, column);
    case DUCKDB_TYPE_USMALLINT:
      return fillNumbers<std::uint16_t>(slice, column);
    case DUCKDB_TYPE_INTEGER:
      return fillNumbers<std::int32_t>(slice, column);
    case DUCKDB_TYPE_UINTEGER:
      return fillNumbers<std::uint32_t>(slice, column);
    case DUCKDB_TYPE_BIGINT:
      return fillNumbers<std::int64_t>(slice, column);
    case DUCKDB_TYPE_HUGEINT:
      if (column.type.isDecimal()) return fillDecimals<duckdb_hugeint>(slice, column);
      break;
    default:
      break;
  }
  throwUnexpected(column);
}

/// The double that is written with the same digits as the real.
double shownDouble(float value) {
  std::array<char, 32> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  double shown = 0;
  std::from_chars(digits.data(), written.ptr, shown);
  return shown;
}

void fillApproximate(const Slice& slice, const Column& column) {
  if (column.physical == DUCKDB_TYPE_DOUBLE)
    return slice.fill<double>([](double raw) { return Variant(raw); });
  if (column.physical == DUCKDB_TYPE_FLOAT)
    return slice.fill<float>([](float raw) { return Variant(shownDouble(raw)); });
  throwUnexpected(column);
}

void fillDates(const Slice& slice, const Column& column) {
  switch (column.physical) {
    case DUCKDB_TYPE_TIMESTAMP:
      return fillTimestamps(slice, 1);
    case DUCKDB_TYPE_TIMESTAMP_MS:
      return fillTimestamps(slice, 1000);
    case DUCKDB_TYPE_TIMESTAMP_S:
      return fillTimestamps(slice, 1'000'000);
    case DUCKDB_TYPE_DATE:
      return slice.fill<std::int32_t>([](std::int32_t days) {
        return Variant(Date::fromMicroseconds(days * kMicrosecondsPerDay));
      });
    default:
      throwUnexpected(column);
  }
}

void fillColumn(const Slice& slice, const Column& column) {
  if (column.type.isText() && column.physical == DUCKDB_TYPE_VARCHAR) return fillTexts(slice);
  if (column.type.isDate()) return fillDates(slice, column);
  if (column.type.isApproximate()) return fillApproximate(slice, column);
  fillNumbers(slice, column);
}

/// In steps of so many rows that their cells stay close at hand while one column after the
/// other is filled in.
void appendChunk(duckdb_data_chunk chunk, const std::vector<Column>& columns,
                 std::vector<Variant>& cells) {
  constexpr std::size_t kStep = 32;
  const std::size_t rows = duckdb_data_chunk_get_size(chunk);
  for (std::size_t first = 0; first < rows; first += kStep) {
    const std::size_t count = std::min(kStep, rows - first);
    const std::size_t filled = cells.size();
    cells.resize(filled + count * columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
      fillColumn({duckdb_data_chunk_get_vector(chunk, i), first, count, &cells[filled + i],
                  columns.size()},
                 columns[i]);
  }
}

}  // namespace

std::vector<Variant> readCells(Result& result, std::span<const SqlType> types) {
  if (result.columnCount() != types.size())
    throwError("The engine answered " + std::to_string(result.columnCount()) + " columns where " +
               std::to_string(types.size()) + " were expected.");
  std::vector<Column> columns;
  for (std::size_t i = 0; i < types.size(); ++i) columns.push_back(describe(result, i, types[i]));
  std::vector<Variant> cells;
  cells.reserve(result.rowCount() * columns.size());
  while (const auto chunk = result.next()) appendChunk(chunk.get(), columns, cells);
  return cells;
}

std::vector<std::vector<Variant>> readTexts(Session& session, const std::string& sql,
                                            std::size_t columns) {
  auto result = session.run(sql);
  const std::vector types(columns, SqlType::nvarchar(SqlType::kMaxLength));
  auto cells = readCells(result, types);
  std::vector<std::vector<Variant>> rows;
  for (auto cell = cells.begin(); cell != cells.end(); cell += static_cast<std::ptrdiff_t>(columns))
    rows.emplace_back(cell, cell + static_cast<std::ptrdiff_t>(columns));
  return rows;
}

}  // namespace velmora::ado::embedded
