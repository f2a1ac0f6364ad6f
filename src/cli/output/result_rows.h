#pragma once

#include <string>

#include "velmora/ado/recordset.h"

namespace velmora::cli {

/// A result that the program itself puts together, columns first, then the cells row
/// by row.
class ResultRows {
 public:
  ResultRows& textColumn(std::string name) { return column(std::move(name), ado::adVarWChar, -1); }
  ResultRows& countColumn(std::string name) { return column(std::move(name), ado::adInteger, 4); }

  /// Amounts keep their decimals as given.
  ResultRows& amountColumn(std::string name) { return column(std::move(name), ado::adDecimal, 19); }

  ResultRows& add(const collections::Decimal& amount) {
    rows_.cells.emplace_back(amount);
    return *this;
  }
  ResultRows& add(std::string_view text) {
    rows_.cells.emplace_back(text);
    return *this;
  }
  ResultRows& add(std::size_t count) {
    rows_.cells.emplace_back(static_cast<std::int32_t>(count));
    return *this;
  }

  ado::RecordsetRef finish() { return ado::Recordset::fromRowset(std::move(rows_)); }

 private:
  ResultRows& column(std::string name, ado::DataTypeEnum type, std::int64_t size) {
    ado::FieldDefinition field;
    field.name = std::move(name);
    field.type = type;
    field.definedSize = size;
    rows_.fields.push_back(std::move(field));
    return *this;
  }

  ado::Rowset rows_;
};

}  // namespace velmora::cli
