#include "platform/ado/recordset_store.h"

#include <algorithm>
#include <utility>

#include "platform/ado/filter_parser.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado {

RecordsetStore::RecordsetStore(Rowset rows)
    : rows_(std::move(rows)), indexes_(rows_.fields.size()) {
  for (std::size_t field = 0; field < fields().size(); ++field) indexName(field);
  views_.push_back(std::make_shared<RecordsetView>(std::string(), FilterCriteria()));
  for (std::size_t row = 0; row < rows_.rowCount(); ++row)
    views_.front()->test(row, cellsOf(row).data());
}

void RecordsetStore::indexName(std::size_t field) {
  names_.try_emplace(collections::lowerCased(fields()[field].name), field);
}

void RecordsetStore::addField(FieldDefinition field) {
  if (names_.contains(collections::lowerCased(field.name)))
    throw com::Error(com::error::kDuplicateKey, "ADODB.Fields",
                     "There is already a column '" + field.name + "'");
  rows_.fields.push_back(std::move(field));
  indexes_.emplace_back();
  indexName(fields().size() - 1);
}

std::size_t RecordsetStore::fieldIndex(std::string_view name) const {
  const auto found = names_.find(collections::lowerCased(name));
  if (found == names_.end())
    throw com::Error(com::error::kAdoItemNotFound, "ADODB.Fields",
                     "There is no column '" + std::string(name) + "'");
  return found->second;
}

void RecordsetStore::setCells(std::size_t row,
                              std::span<const std::pair<std::size_t, Variant>> values) {
  for (const auto& [field, value] : values) {
    rows_.cells[row * fields().size() + field] = value;
    indexes_[field].cellChanged();
  }
  for (const auto& view : views_) {
    const auto readsCell = [&](const auto& cell) { return view->criteria().reads(cell.first); };
    if (std::ranges::any_of(values, readsCell)) view->test(row, cellsOf(row).data());
  }
}

std::size_t RecordsetStore::addRow() {
  const std::size_t row = rows_.rowCount();
  rows_.cells.resize(rows_.cells.size() + fields().size(), collections::Null{});
  for (EqualityIndex& index : indexes_) index.rowAdded();
  for (const auto& view : views_) view->test(row, cellsOf(row).data());
  return row;
}

void RecordsetStore::deleteRow(std::size_t row) {
  for (const auto& view : views_) view->remove(row);
}

std::shared_ptr<const RecordsetView> RecordsetStore::view(std::string_view criteria) {
  const auto known = std::ranges::find(
      views_, criteria, [](const auto& view) { return std::string_view(view->text()); });
  if (known == views_.begin()) return *known;
  if (known != views_.end()) {
    std::rotate(known, known + 1, views_.end());
    return views_.back();
  }
  auto made =
      std::make_shared<RecordsetView>(std::string(criteria), parseFilter(criteria, fields()));
  fill(*made);
  dropIdleViews();
  views_.push_back(made);
  return made;
}

/// Looks at as few rows as what is known already allows.
void RecordsetStore::fill(RecordsetView& view) {
  constexpr std::size_t few = 64;  // not worth a look into the indexes
  const RowSet& wider = smallestWider(view.criteria()).rows();
  const auto* candidates = wider.count() > few ? fewestCandidates(view.criteria()) : nullptr;
  if (candidates != nullptr && candidates->size() < wider.count()) {
    for (const std::size_t row : *candidates)
      if (exists(row)) view.test(row, cellsOf(row).data());
    return;
  }
  for (auto row = wider.firstFrom(0); row != RowSet::kNone; row = wider.firstFrom(row + 1))
    view.test(row, cellsOf(row).data());
}

const RecordsetView& RecordsetStore::smallestWider(const FilterCriteria& criteria) const {
  const RecordsetView* best = views_.front().get();
  for (const auto& view : views_)
    if (view->rows().count() < best->rows().count() && criteria.narrows(view->criteria()))
      best = view.get();
  return *best;
}

const EqualityIndex::Rows* RecordsetStore::fewestCandidates(const FilterCriteria& criteria) {
  const EqualityIndex::Rows* fewest = nullptr;
  for (const auto& part : criteria.parts()) {
    const auto* comparison = std::get_if<Comparison>(&part.criterion.node);
    if (comparison == nullptr || comparison->operation != Comparison::Operation::equal) continue;
    const std::size_t field = comparison->field;
    const auto* rows = indexes_[field].candidates(
        *comparison, rows_.rowCount(),
        [this, field](std::size_t row) -> const Variant& { return cell(row, field); });
    if (rows != nullptr && (fewest == nullptr || rows->size() < fewest->size())) fewest = rows;
  }
  return fewest;
}

/// Views that no recordset shows stay for a while: settlement sets the same few
/// filters again and again. Each of them costs a test per changed cell.
void RecordsetStore::dropIdleViews() {
  constexpr std::size_t keptIdle = 2;
  std::size_t idle = 0;
  for (std::size_t i = views_.size(); i-- > 1;)
    if (views_[i].use_count() == 1 && ++idle > keptIdle)
      views_.erase(views_.begin() + static_cast<std::ptrdiff_t>(i));
}

}  // namespace velmora::ado
