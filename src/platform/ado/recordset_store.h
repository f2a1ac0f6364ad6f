#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/ado/equality_index.h"
#include "platform/ado/recordset_view.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado {

/// Columns and rows that a recordset shares with its clones, and the views that
/// their filters show. Rows keep their number for good; a deleted one is in no view.
class RecordsetStore {
 public:
  explicit RecordsetStore(Rowset rows = {});

  const std::vector<FieldDefinition>& fields() const noexcept { return rows_.fields; }
  /// kDuplicateKey when the name is taken. Only while there are no rows.
  void addField(FieldDefinition field);
  /// Letter case ignored, the first of equal names; kAdoItemNotFound naming the column.
  std::size_t fieldIndex(std::string_view name) const;

  const Variant& cell(std::size_t row, std::size_t field) const noexcept {
    return rows_.cells[row * fields().size() + field];
  }
  std::span<const Variant> cellsOf(std::size_t row) const noexcept {
    return {rows_.cells.data() + row * fields().size(), fields().size()};
  }
  bool exists(std::size_t row) const noexcept { return views_.front()->rows().contains(row); }

  /// Stores values, each with its column, as they are; the views follow.
  void setCells(std::size_t row, std::span<const std::pair<std::size_t, Variant>> values);
  /// Appends a row of Nulls and returns its number.
  std::size_t addRow();
  void deleteRow(std::size_t row);

  /// The rows that satisfy `criteria`; see parseFilter for its errors.
  std::shared_ptr<const RecordsetView> view(std::string_view criteria);

 private:
  using Views = std::vector<std::shared_ptr<RecordsetView>>;

  void indexName(std::size_t field);
  void fill(RecordsetView& view);
  const RecordsetView& smallestWider(const FilterCriteria& criteria) const;
  const EqualityIndex::Rows* fewestCandidates(const FilterCriteria& criteria);
  void dropIdleViews();

  Rowset rows_;
  std::unordered_map<std::string, std::size_t> names_;  // in lower case
  std::vector<EqualityIndex> indexes_;                  // one a column
  Views views_;  // the first shows all rows; then the others, last used last
};

}  // namespace velmora::ado
