#include "platform/ado/duckdb/column_writer.h"

#include "platform/ado/characters.h"
#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/value_conversion.h"
#include "velmora/com/error.h"

namespace velmora::ado::embedded {

namespace {

using collections::int128;
using collections::VarType;

constexpr std::int64_t kMicrosecondsPerDay = 24LL * 60 * 60 * 1000 * 1000;

/// Bytes of the UTF-8 character at the front of `text`; 0 when it is none.
std::size_t characterBytes(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return 1;
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return 0;
  for (std::size_t i = 1; i < bytes; ++i)
    if ((text[i] & 0xC0) != 0x80) return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool beyond = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
  return overlong || beyond ? 0 : bytes;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto bytes = characterBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

}  // namespace

ColumnWriter::ColumnWriter(const std::string& table, const tsql::ColumnInfo& column)
    : column_(column.nameInEngine()),
      field_(tsql::fieldDefinition(table + "." + column.name, column.type, column.nullable)) {}

void ColumnWriter::aim(duckdb_vector vector, duckdb_logical_type type) {
  vector_ = vector;
  data_ = duckdb_vector_get_data(vector);
  physical_ = duckdb_get_type_id(type);
  if (physical_ == DUCKDB_TYPE_DECIMAL) physical_ = duckdb_decimal_internal_type(type);
}

void ColumnWriter::write(std::size_t row, const Variant& value) {
  const auto cell = convertToField(value, field_);
  if (cell.isNull()) {
    duckdb_vector_ensure_validity_writable(vector_);
    duckdb_validity_set_row_invalid(duckdb_vector_get_validity(vector_), row);
    return;
  }
  putCell(row, cell);
}

void ColumnWriter::write(std::size_t row, std::string_view text) {
  if (physical_ != DUCKDB_TYPE_VARCHAR) return write(row, Variant(text));
  if (field_.definedSize > 0 && characterCount(text) > static_cast<std::size_t>(field_.definedSize))
    return write(row, Variant(text));  // raises
  putText(row, text);
}

void ColumnWriter::putCell(std::size_t row, const Variant& cell) {
  switch (cell.type()) {
    case VarType::boolean:
      return putInteger(row, cell.toBool() ? 1 : 0);
    case VarType::decimal:
      return putDecimal(row, cell.toDecimal());
    case VarType::real:
      if (physical_ == DUCKDB_TYPE_FLOAT) return put(row, static_cast<float>(cell.toDouble()));
      return put(row, cell.toDouble());
    case VarType::date:
      if (physical_ == DUCKDB_TYPE_DATE)
        return put(row,
                   static_cast<std::int32_t>(cell.toDate().microseconds() / kMicrosecondsPerDay));
      return put(row, cell.toDate().microseconds());
    case VarType::string:
      return putText(row, cell.text());
    default:
      return putInteger(row, cell.toInt64());
  }
}

void ColumnWriter::putInteger(std::size_t row, std::int64_t value) {
  switch (physical_) {
    case DUCKDB_TYPE_BOOLEAN:
      return put(row, value != 0);
    case DUCKDB_TYPE_TINYINT:
      return put(row, static_cast<std::int8_t>(value));
    case DUCKDB_TYPE_UTINYINT:
      return put(row, static_cast<std::uint8_t>(value));
    case DUCKDB_TYPE_SMALLINT:
      return put(row, static_cast<std::int16_t>(value));
    case DUCKDB_TYPE_INTEGER:
      return put(row, static_cast<std::int32_t>(value));
    case DUCKDB_TYPE_BIGINT:
      return put(row, value);
    default:
      fail("the engine's type does not take whole numbers");
  }
}

void ColumnWriter::putDecimal(std::size_t row, const collections::Decimal& value) {
  const int128 coefficient = value.coefficient();
  switch (physical_) {
    case DUCKDB_TYPE_SMALLINT:
      return put(row, static_cast<std::int16_t>(coefficient));
    case DUCKDB_TYPE_INTEGER:
      return put(row, static_cast<std::int32_t>(coefficient));
    case DUCKDB_TYPE_BIGINT:
      return put(row, static_cast<std::int64_t>(coefficient));
    case DUCKDB_TYPE_HUGEINT:
      return put(row, duckdb_hugeint{static_cast<std::uint64_t>(coefficient),
                                     static_cast<std::int64_t>(coefficient >> 64)});
    default:
      fail("the engine's type does not take decimals");
  }
}

void ColumnWriter::putText(std::size_t row, std::string_view text) {
  if (!isUtf8(text)) fail("the text is not valid UTF-8");
  duckdb_vector_assign_string_element_len(vector_, row, text.data(), text.size());
}

void ColumnWriter::fail(const std::string& problem) const {
  throw com::Error(com::error::kAdoDataConversion, kSource,
                   "Column '" + field_.name + "': " + problem);
}

}  // namespace velmora::ado::embedded
