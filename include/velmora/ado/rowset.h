#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "velmora/ado/enums.h"
#include "velmora/collections/variant.h"

namespace velmora::ado {

using collections::Variant;

/// A column of a result or of an in-memory recordset.
struct FieldDefinition {
  std::string name;  ///< may be empty (an expression without alias)
  DataTypeEnum type = adVariant;
  /// Characters of a text type (-1: no limit), else bytes of the type.
  std::int64_t definedSize = 0;
  int precision = 0;     ///< adNumeric, adDecimal: digits
  int numericScale = 0;  ///< adNumeric, adDecimal: digits of the fraction
  bool nullable = true;

  /// Digits that the column keeps after the point: none of a whole number, as many as a
  /// number has where the column sets no limit (real and text columns, a decimal one
  /// without precision and scale).
  int decimals() const noexcept;
};

/// Rows as a provider hands them over: row-major cells, each Null or of the
/// Variant type of its column (adInteger Int32, adSmallInt and adUnsignedTinyInt
/// Int16, adBigInt Int64, adBoolean Boolean, adDouble and adSingle Double,
/// adNumeric, adDecimal and adCurrency Decimal with the column's scale, dates
/// Date, texts String).
struct Rowset {
  std::vector<FieldDefinition> fields;
  std::vector<Variant> cells;

  std::size_t rowCount() const noexcept {
    return fields.empty() ? 0 : cells.size() / fields.size();
  }
};

/// What one statement of a batch answered.
struct StatementResult {
  bool hasRows = false;
  Rowset rows;                        ///< when hasRows
  std::int64_t recordsAffected = -1;  ///< -1: not counted
};

}  // namespace velmora::ado
