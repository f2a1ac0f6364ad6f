#pragma once

#include <string>
#include <utility>

#include "platform/ado/filter_criteria.h"
#include "platform/ado/row_set.h"

namespace velmora::ado {

/// The rows that satisfy one filter, kept up to date row by row as cells change.
/// Recordsets with the same filter over the same rows share it.
class RecordsetView {
 public:
  RecordsetView(std::string text, FilterCriteria criteria)
      : text_(std::move(text)), criteria_(std::move(criteria)) {}

  /// The filter as set; empty for the view of all rows.
  const std::string& text() const noexcept { return text_; }
  const FilterCriteria& criteria() const noexcept { return criteria_; }
  const RowSet& rows() const noexcept { return rows_; }

  /// Takes the row in or out, as its cells ask for.
  void test(std::size_t row, const Variant* cells);
  void remove(std::size_t row) noexcept { rows_.erase(row); }

 private:
  std::string text_;
  FilterCriteria criteria_;
  RowSet rows_;
};

}  // namespace velmora::ado
