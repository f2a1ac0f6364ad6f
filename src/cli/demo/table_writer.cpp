#include "cli/demo/table_writer.h"

#include "velmora/com/error.h"

namespace velmora::cli::demo {

namespace {

// What the embedded engine stores in one piece: smaller batches would be taken apart and
// packed again when the next one comes.
constexpr std::size_t kBatchRows = 122'880;

}  // namespace

void TableWriter::append(std::string_view text) {
  cells_.push_back({.kind = Kind::kText,
                    .length = static_cast<std::uint32_t>(text.size()),
                    .value = static_cast<std::int64_t>(texts_.size())});
  texts_ += text;
}

void TableWriter::endRow() {
  if (cells_.size() % columns_.size() != 0)
    throw com::Error(
        com::error::kInvalidArgument, "demo",
        "a row of " + table_ + " does not have " + std::to_string(columns_.size()) + " values");
  if (cells_.size() >= kBatchRows * columns_.size()) store();
}

void TableWriter::store() {
  if (cells_.empty()) return;
  const auto bulk = connection_.bulkInsert(table_, columns_);
  std::size_t column = 0;
  for (const Cell& cell : cells_) {
    storeCell(*bulk, cell);
    if (++column < columns_.size()) continue;
    bulk->endRow();
    column = 0;
  }
  bulk->finish();
  cells_.clear();
  texts_.clear();
}

void TableWriter::storeCell(ado::BulkInsert& bulk, const Cell& cell) const {
  switch (cell.kind) {
    case Kind::kNull:
      return bulk.appendNull();
    case Kind::kInteger:
      return bulk.append(cell.value);
    case Kind::kDecimal:
      return bulk.append(collections::Decimal::fromCoefficient(cell.value, cell.scale));
    case Kind::kDate:
      return bulk.append(collections::Date::fromMicroseconds(cell.value));
    case Kind::kText:
      return bulk.append(
          std::string_view(texts_).substr(static_cast<std::size_t>(cell.value), cell.length));
  }
}

}  // namespace velmora::cli::demo
