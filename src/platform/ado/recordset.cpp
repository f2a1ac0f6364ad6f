#include "velmora/ado/recordset.h"

#include <algorithm>
#include <utility>

#include "platform/ado/recordset_store.h"
#include "platform/ado/value_conversion.h"
#include "velmora/ado/connection.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

constexpr std::size_t kNone = RowSet::kNone;

[[noreturn]] void fail(std::int32_t number, const char* description) {
  throw com::Error(number, "ADODB.Recordset", description);
}

enum class Place { beforeFirst, onRow, afterLast };

}  // namespace

struct Recordset::Body {
  std::shared_ptr<RecordsetStore> store = std::make_shared<RecordsetStore>();
  std::shared_ptr<const RecordsetView> view;  // nothing while closed
  Place place = Place::afterLast;
  std::size_t row = 0;  // on a row: its number, in the view or not
  std::string filter;
  bool adding = false;  // the row is new and not confirmed by Update
  bool readOnly = true;
  ConnectionRef connection;
  std::vector<Rowset> further;  // rowsets for NextRecordset, the next one last
  CursorLocationEnum cursorLocation = adUseServer;
  CursorTypeEnum cursorType = adOpenForwardOnly;
  LockTypeEnum lockType = adLockReadOnly;

  bool noRows() const noexcept { return view->rows().count() == 0 && !adding; }

  void open(bool writable) {
    view = store->view({});
    readOnly = !writable;
    cursorLocation = adUseClient;
    cursorType = adOpenStatic;
    lockType = writable ? adLockBatchOptimistic : adLockReadOnly;
    goToFirst();
  }

  void goToFirst() noexcept { goTo(view->rows().firstFrom(0), Place::afterLast); }

  /// `otherwise`: the place when there is no such row.
  void goTo(std::size_t target, Place otherwise) noexcept {
    adding = false;
    place = target == kNone ? otherwise : Place::onRow;
    if (target != kNone) row = target;
  }
};

Recordset::Recordset() : body_(std::make_unique<Body>()) {}
Recordset::~Recordset() = default;

RecordsetRef Recordset::fromRowset(Rowset rows) {
  std::vector<Rowset> results;
  results.push_back(std::move(rows));
  return fromResults(std::move(results), nullptr);
}

RecordsetRef Recordset::fromResults(std::vector<Rowset> results, ConnectionRef connection) {
  auto made = com::make<Recordset>();
  Body& body = *made->body_;
  body.connection = std::move(connection);
  if (results.empty()) return made;
  std::ranges::reverse(results);
  body.store = std::make_shared<RecordsetStore>(std::move(results.back()));
  results.pop_back();
  body.further = std::move(results);
  body.open(false);
  return made;
}

void* Recordset::find(const com::Guid& iid) noexcept {
  return iid == kInterfaceId ? this : Object::find(iid);
}

void Recordset::requireOpen() const {
  if (State() == adStateClosed)
    fail(com::error::kAdoObjectClosed, "The recordset is closed; expected an open one");
}

void Recordset::requireNotOpen() const {
  if (State() == adStateOpen)
    fail(com::error::kAdoObjectOpen, "The recordset is open; expected a closed one");
}

// What is set before opening

CursorLocationEnum Recordset::CursorLocation() const noexcept {
  return body_->cursorLocation;
}
CursorTypeEnum Recordset::CursorType() const noexcept {
  return body_->cursorType;
}
LockTypeEnum Recordset::LockType() const noexcept {
  return body_->lockType;
}

void Recordset::CursorLocation(CursorLocationEnum location) {
  requireNotOpen();
  body_->cursorLocation = location;
}

void Recordset::CursorType(CursorTypeEnum type) {
  requireNotOpen();
  body_->cursorType = type;
}

void Recordset::LockType(LockTypeEnum type) {
  requireNotOpen();
  body_->lockType = type;
}

// Opening and closing

void Recordset::Open() {
  requireNotOpen();
  if (fieldCount() == 0)
    fail(com::error::kAdoInvalidArgument,
         "The recordset has no columns; expected Fields().Append before Open");
  body_->open(true);
}

void Recordset::Open(std::string_view source, const ConnectionRef& connection, CursorTypeEnum,
                     LockTypeEnum, int options) {
  requireNotOpen();
  if (!connection)
    fail(com::error::kAdoObjectClosed, "Open with a query needs an open connection, got none");
  const auto answered = connection->Execute(source, nullptr, options);
  if (answered->State() == adStateOpen) std::swap(body_, answered->body_);
}

void Recordset::Close() {
  requireOpen();
  body_ = std::make_unique<Body>();
}

ObjectStateEnum Recordset::State() const noexcept {
  return body_->view ? adStateOpen : adStateClosed;
}

ConnectionRef Recordset::ActiveConnection() const {
  return body_->connection;
}
void Recordset::ActiveConnection(ConnectionRef connection) {
  body_->connection = std::move(connection);
}

RecordsetRef Recordset::NextRecordset() {
  requireOpen();
  if (body_->further.empty()) return {};
  std::vector<Rowset> results = std::exchange(body_->further, {});
  std::ranges::reverse(results);
  return fromResults(std::move(results), body_->connection);
}

RecordsetRef Recordset::Clone(LockTypeEnum lockType) const {
  requireOpen();
  auto clone = com::make<Recordset>();
  Body& body = *clone->body_;
  body.store = body_->store;
  body.connection = body_->connection;
  body.open(!body_->readOnly && lockType != adLockReadOnly);
  return clone;
}

// Position

bool Recordset::BOF() const {
  requireOpen();
  return body_->place == Place::beforeFirst || body_->noRows();
}

bool Recordset::EOF_() const {
  requireOpen();
  return body_->place == Place::afterLast || body_->noRows();
}

std::int64_t Recordset::RecordCount() const {
  requireOpen();
  return static_cast<std::int64_t>(body_->view->rows().count());
}

void Recordset::MoveFirst() {
  requireOpen();
  if (RecordCount() == 0)
    fail(com::error::kAdoNoCurrentRow, "There is no first row: no row satisfies the filter");
  body_->goToFirst();
}

void Recordset::MoveLast() {
  requireOpen();
  if (RecordCount() == 0)
    fail(com::error::kAdoNoCurrentRow, "There is no last row: no row satisfies the filter");
  body_->goTo(body_->view->rows().lastBefore(kNone), Place::beforeFirst);
}

void Recordset::MoveNext() {
  requireOpen();
  if (body_->place == Place::afterLast)
    fail(com::error::kAdoNoCurrentRow, "There is no next row: the recordset is at its end (EOF)");
  const std::size_t from = body_->place == Place::onRow ? body_->row + 1 : 0;
  body_->goTo(body_->view->rows().firstFrom(from), Place::afterLast);
}

void Recordset::MovePrevious() {
  requireOpen();
  if (body_->place == Place::beforeFirst || (body_->place == Place::afterLast && body_->noRows()))
    fail(com::error::kAdoNoCurrentRow,
         "There is no previous row: the recordset is at its beginning (BOF)");
  const std::size_t before = body_->place == Place::onRow ? body_->row : kNone;
  body_->goTo(body_->view->rows().lastBefore(before), Place::beforeFirst);
}

std::int64_t Recordset::AbsolutePosition() const {
  requireOpen();
  const RowSet& rows = body_->view->rows();
  if (body_->place != Place::onRow || !rows.contains(body_->row)) return -1;
  return static_cast<std::int64_t>(rows.countBefore(body_->row)) + 1;
}

// Rows

std::size_t Recordset::currentRow() const {
  requireOpen();
  if (body_->place != Place::onRow)
    fail(com::error::kAdoNoCurrentRow, "There is no current row: BOF or EOF is true");
  if (!body_->store->exists(body_->row))
    fail(com::error::kAdoNoCurrentRow, "The current row has been deleted");
  return body_->row;
}

void Recordset::requireWritable() const {
  requireOpen();
  if (body_->readOnly)
    fail(com::error::kAdoNotSupported, "The recordset is read-only; expected one made in memory");
}

void Recordset::AddNew() {
  requireWritable();
  body_->row = body_->store->addRow();
  body_->place = Place::onRow;
  body_->adding = true;
}

void Recordset::Update() {
  requireWritable();
  currentRow();
  body_->adding = false;
}

void Recordset::Delete() {
  requireWritable();
  body_->store->deleteRow(currentRow());
  body_->adding = false;
}

const std::string& Recordset::Filter() const noexcept {
  return body_->filter;
}

void Recordset::Filter(std::string_view criteria) {
  requireOpen();
  body_->view = body_->store->view(criteria);
  body_->filter = criteria;
  body_->goToFirst();
}

const Variant& Recordset::GetValue(std::size_t field) const {
  const std::size_t row = currentRow();
  definition(field);
  return body_->store->cell(row, field);
}

std::span<const Variant> Recordset::GetRow() const {
  return body_->store->cellsOf(currentRow());
}

void Recordset::SetValue(std::size_t field, const Variant& value) {
  requireWritable();
  const std::size_t row = currentRow();
  const std::pair cell(field, convertToField(value, definition(field)));
  body_->store->setCells(row, {&cell, 1});
}

Variant Recordset::ConvertedValue(std::size_t field, const Variant& value) const {
  requireWritable();
  return convertToField(value, definition(field));
}

void Recordset::SetConvertedValues(std::span<const std::pair<std::size_t, Variant>> values) {
  requireWritable();
  body_->store->setCells(currentRow(), values);
}

// Columns

void Recordset::appendField(FieldDefinition field) {
  requireNotOpen();
  body_->store->addField(std::move(field));
}

std::size_t Recordset::fieldCount() const noexcept {
  return body_->store->fields().size();
}

const FieldDefinition& Recordset::definition(std::size_t field) const {
  const auto& fields = body_->store->fields();
  if (field >= fields.size())
    throw com::Error(com::error::kAdoItemNotFound, "ADODB.Fields",
                     "There is no column " + std::to_string(field) + "; the recordset has " +
                         std::to_string(fields.size()));
  return fields[field];
}

std::size_t Recordset::fieldIndex(std::string_view name) const {
  return body_->store->fieldIndex(name);
}

}  // namespace velmora::ado
