#pragma once

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "settlement/field_map.h"
#include "velmora/ado/recordset.h"

namespace velmora::settlement {

/// Where the columns of one side's documents are.
struct DocumentColumns {
  /// `fields`: column by logical name; `copyMap`: the columns that settlement rows take
  /// over. Raises kAdoItemNotFound naming a column that there is not.
  DocumentColumns(const ado::Recordset& rows, const collections::Dictionary& fields,
                  const collections::Dictionary& copyMap);

  std::array<std::optional<std::size_t>, kDocumentFields.size()> fields;
  std::size_t FRemark;              ///< 0 open, 1 settled
  std::vector<std::size_t> copies;  ///< one an entry of the copy map
  int quantityDecimals;             ///< that both updated quantity columns hold
};

/// One side of the settlement: its argument's name for messages, and its documents,
/// which may be nothing.
struct Side {
  const char* name;
  ado::RecordsetRef rows;
  /// Found when the side is first settled.
  std::shared_ptr<const DocumentColumns> columns = {};
  /// The same documents with a filter of their own, made when the side is first settled
  /// within itself.
  ado::RecordsetRef clone = {};
};

/// The current document of a side within one run of the allocation. Its changes are
/// gathered, checked against their columns, and reach the document together: what cannot
/// be settled leaves no document half changed.
class OpenDocument {
 public:
  /// The columns of `side` have been found.
  explicit OpenDocument(const Side& side)
      : side_(side), rows_(*side.rows), columns_(*side.columns) {}

  /// Goes over to the recordset's current row. No row may be added from then on.
  void read() {
    cells_ = rows_.GetRow();
    changes_.clear();
  }

  bool has(DocumentField field) const noexcept { return columns_.fields[field].has_value(); }
  /// The number in the column, changed or not; 0 when none is mapped. Raises naming
  /// document and column when it holds no number.
  collections::Decimal number(DocumentField field) const;
  /// A number of decimals, 0 to 38. Raises as number().
  int places(DocumentField field) const;
  int quantityDecimals() const noexcept { return columns_.quantityDecimals; }

  // Raise naming document and column when the column does not take the number.
  void set(DocumentField field, const collections::Decimal& value);
  void add(DocumentField field, const collections::Decimal& change);
  void markSettled() { change(columns_.FRemark, 1); }
  /// Writes the changes.
  void update();

  /// The columns for the settlement row.
  const ado::Variant& copied(std::size_t entry) const { return cells_[columns_.copies[entry]]; }

 private:
  /// The value as the column holds it.
  const ado::Variant& change(std::size_t column, const ado::Variant& value);
  const ado::Variant& current(std::size_t column) const;
  std::size_t column(DocumentField field) const { return *columns_.fields[field]; }
  std::string described(std::size_t column) const;

  const Side& side_;
  ado::Recordset& rows_;
  const DocumentColumns& columns_;
  std::span<const ado::Variant> cells_;
  std::vector<std::pair<std::size_t, ado::Variant>> changes_;  // by column, few
};

}  // namespace velmora::settlement
