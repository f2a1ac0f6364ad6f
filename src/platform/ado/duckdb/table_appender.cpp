#include "platform/ado/duckdb/table_appender.h"

#include <algorithm>
#include <array>

#include "platform/ado/duckdb/clock.h"
#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/rows.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/translate.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado::embedded {

namespace {

void refuseUnless(bool allowed, const std::string& reason) {
  if (!allowed) throwError(reason);
}

const tsql::ColumnInfo* findColumn(const tsql::TableInfo& table, std::string_view name) {
  const auto found = std::ranges::find_if(table.columns, [&](const tsql::ColumnInfo& column) {
    return collections::equalsIgnoringCase(column.name, name);
  });
  return found == table.columns.end() ? nullptr : &*found;
}

}  // namespace

TableAppender::TableAppender(std::shared_ptr<SessionState> state, std::string_view table,
                             std::span<const std::string> columns)
    : state_(std::move(state)), table_(findTable(table)) {
  refuseUnless(!table_.isView, "4405: " + table_.name + " is a view; rows go into tables.");
  refuseUnless(
      table_.temporary || !state_->readOnly,
      "3906: Failed to insert into " + table_.name + ": the database is open for reading only.");
  refuseUnless(!state_->bulkInsertOpen && state_->transactions == 0,
               "A bulk insert into " + table_.name +
                   " needs a transaction of its own; finish the open one first.");
  chooseColumns(columns);
  Session& session = state_->session;
  batch_.emplace(session.stopper(), BatchStopper::Limit{}, session.interrupt());
  beginTransaction(*state_);
  open_ = state_->bulkInsertOpen = true;
  try {
    openAppender();
    makeChunk();
  } catch (...) {
    close();
    throw;
  }
}

TableAppender::~TableAppender() {
  close();
}

const tsql::TableInfo& TableAppender::findTable(std::string_view name) {
  const CatalogStatement turn(state_->catalog);
  const auto* table = state_->catalog.findTable(name);
  refuseUnless(table, "208: Invalid object name '" + std::string(name) + "'.");
  return *table;
}

void TableAppender::chooseColumns(std::span<const std::string> names) {
  for (const auto& name : names) {
    const auto* column = findColumn(table_, name);
    refuseUnless(column, "207: Invalid column name '" + name + "' of " + table_.name + ".");
    refuseUnless(!isChosen(*column),
                 "264: The column name '" + name + "' is specified more than once.");
    columns_.emplace_back(table_.name, *column);
  }
  refuseUnless(!columns_.empty(), "A bulk insert into " + table_.name + " names no column.");
  named_ = columns_.size();
  addIdentity();
  addDefaults();
}

bool TableAppender::isChosen(const tsql::ColumnInfo& column) const {
  return std::ranges::find(columns_, column.nameInEngine(), &ColumnWriter::column) !=
         columns_.end();
}

void TableAppender::addIdentity() {
  const auto* identity = identityColumn(table_);
  if (!identity) return;
  if (isChosen(*identity))
    givenIdentity_ = identity;
  else
    columns_.emplace_back(table_.name, *identity);
}

void TableAppender::addDefaults() {
  const tsql::Variables none;
  const tsql::Scope scope{state_->catalog, none, {}, now()};
  for (const auto& column : table_.columns) {
    if (column.defaultText.empty() || isChosen(column)) continue;
    const auto translation = tsql::translateDefault(table_, column, scope);
    for (const auto& function : translation.functions) state_->functions.require(function);
    defaults_.push_back({std::get<tsql::Rows>(translation.action).sql, column.type});
    columns_.emplace_back(table_.name, column);
  }
}

void TableAppender::openAppender() {
  const char* catalog = table_.temporary ? "temp" : nullptr;
  check(duckdb_appender_create_ext(state_->session.handle(), catalog, "main", table_.name.c_str(),
                                   &appender_));
  for (const auto& column : columns_)
    check(duckdb_appender_add_column(appender_, column.column().c_str()));
}

void TableAppender::makeChunk() {
  std::vector<LogicalType> types;
  std::vector<duckdb_logical_type> handles;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    types.emplace_back(duckdb_appender_column_type(appender_, i));
    handles.push_back(types.back().get());
  }
  chunk_.reset(duckdb_create_data_chunk(handles.data(), handles.size()));
  for (std::size_t i = 0; i < columns_.size(); ++i)
    columns_[i].aim(duckdb_data_chunk_get_vector(chunk_.get(), i), handles[i]);
}

ColumnWriter& TableAppender::currentColumn() {
  if (!open_) throwError("The bulk insert into " + table_.name + " is finished.");
  if (next_ >= named_)
    throwError("A row for " + table_.name + " has more than its " + std::to_string(named_) +
               " values.");
  return columns_[next_];
}

void TableAppender::append(const Variant& value) {
  currentColumn().write(rows_, value);
  ++next_;
}

void TableAppender::append(std::string_view text) {
  currentColumn().write(rows_, text);
  ++next_;
}

void TableAppender::endRow() {
  if (next_ != named_)
    throwError("A row for " + table_.name + " has " + std::to_string(next_) + " of its " +
               std::to_string(named_) + " values.");
  if (columns_.size() - defaults_.size() > named_)
    columns_[named_].write(rows_, Variant(state_->catalog.takeIdentity(table_)));
  next_ = 0;
  if (++rows_ == duckdb_vector_size()) flushChunk();
}

/// Row by row: newid() gives each its own.
void TableAppender::writeDefaults() {
  for (std::size_t i = 0; i < defaults_.size(); ++i) {
    auto result =
        state_->session.run(defaults_[i].sql + " FROM range(" + std::to_string(rows_) + ")");
    const auto cells = readCells(result, std::array{defaults_[i].type});
    auto& column = columns_[columns_.size() - defaults_.size() + i];
    for (std::size_t row = 0; row < rows_; ++row) column.write(row, cells[row]);
  }
}

void TableAppender::flushChunk() {
  state_->session.stopper().throwIfStopped();
  writeDefaults();
  duckdb_data_chunk_set_size(chunk_.get(), rows_);
  check(duckdb_append_data_chunk(appender_, chunk_.get()));
  rows_ = 0;
  makeChunk();
}

void TableAppender::finish() {
  refuseUnless(open_, "The bulk insert into " + table_.name + " is finished.");
  refuseUnless(next_ == 0, "The last row for " + table_.name + " is not ended.");
  flushChunk();
  check(duckdb_appender_close(appender_));
  const CatalogStatement turn(state_->catalog);
  if (givenIdentity_) checkGivenNumbers();
  commitTransaction(*state_);
  if (givenIdentity_) state_->catalog.forgetIdentities(table_);
  close();
}

// No index watches over identity columns, because the numbers that the provider gives
// never repeat; those given from outside may.
void TableAppender::checkGivenNumbers() {
  state_->catalog.nextIdentity(table_);  // no other connection numbers rows meanwhile
  const auto column = tsql::quoteName(givenIdentity_->nameInEngine());
  const auto repeated =
      readTexts(state_->session,
                "select cast(" + column + " as varchar) from " + table_.engineName + " group by " +
                    column + " having count(*) > 1 limit 1",
                1);
  if (!repeated.empty())
    throwError("2627: Cannot insert duplicate key into " + table_.name +
               "; the duplicate key value is (" + givenIdentity_->name + ": " +
               repeated[0][0].toText() + ").");
}

void TableAppender::check(duckdb_state state) {
  if (state == DuckDBSuccess) return;
  auto data = duckdb_appender_error_data(appender_);
  const std::string message = duckdb_error_data_message(data);
  duckdb_destroy_error_data(&data);
  state_->session.stopper().throwIfStopped();
  throwEngineError(message);
}

void TableAppender::close() noexcept {
  if (!open_) return;
  open_ = state_->bulkInsertOpen = false;
  state_->session.stopper().end();
  duckdb_appender_destroy(&appender_);  // writes what it still holds, so before the rollback
  if (state_->transactions > 0) rollbackTransaction(*state_);
  batch_.reset();
}

}  // namespace velmora::ado::embedded
