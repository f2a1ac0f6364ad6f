#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "velmora/ado/enums.h"
#include "velmora/ado/rowset.h"
#include "velmora/com/unknown.h"

namespace velmora::ado {

class Connection;
class Recordset;

/// One column of a recordset: its definition and the current row's value.
/// Valid as long as its recordset.
class Field {
 public:
  const std::string& Name() const;
  DataTypeEnum Type() const;
  std::int64_t DefinedSize() const;
  int Precision() const;
  int NumericScale() const;
  /// Raises kAdoNoCurrentRow at BOF or EOF.
  const Variant& Value() const;
  /// Sets the current row's value, converted to the column's type; see Recordset::SetValue.
  void Value(const Variant& value);

 private:
  friend class Recordset;
  friend class Fields;
  Field(Recordset& owner, std::size_t index) : owner_(&owner), index_(index) {}
  Recordset* owner_;
  std::size_t index_;
};

/// The columns of a recordset, by name (letter case ignored) or 0-based position.
class Fields {
 public:
  explicit Fields(Recordset& owner) : owner_(&owner) {}

  std::size_t Count() const;
  /// kAdoItemNotFound naming the column when there is none.
  Field operator()(std::string_view name) const;
  Field operator()(std::size_t index) const;
  /// Adds a column to a recordset that is not open. `definedSize` is in characters
  /// for texts, 0 without limit, and the type's own for all others. A decimal column
  /// without precision and scale keeps every digit. kAdoObjectOpen when the recordset
  /// is open, kDuplicateKey when the name is taken, kAdoInvalidArgument when there is
  /// no such type, or precision (0..38) and scale (0..precision) do not fit.
  void Append(std::string_view name, DataTypeEnum type, std::int64_t definedSize = 0,
              int precision = 0, int numericScale = 0);

 private:
  Recordset* owner_;
};

/// A client-side, static recordset. Once its connection is cleared it is
/// self-contained and outlives the call that made it.
///
/// Made three ways: by Connection::Execute or Command::Execute; by Open with a
/// query and a connection; or in memory, by Fields().Append and Open() (then rows
/// can be added and changed).
///
/// A closed recordset raises kAdoObjectClosed for everything but State, Open, what
/// is set before opening, and its columns. Moving beyond the ends, moving in an
/// empty view and reading without a current row raise kAdoNoCurrentRow.
///
/// Filter shows only the rows that satisfy
///   column operator value [and|or column operator value ...], parentheses around
///   groups, "and" before "or"; operators = <> < > <= >= like (with * or % at the
///   ends, or both); values are numbers, 'text' (a doubled quote stands for one),
///   #YYYY-MM-DD# / 'YYYY-MM-DD', true, false; column names may be in [brackets];
///   texts compare without regard to case. A column that holds Null satisfies
///   only "= null"; "<> null" finds the others.
/// A changed row that no longer satisfies the filter leaves the view at once. It
/// stays readable and writable as the current row until the next move; MoveNext
/// then reaches the row that follows it in the view, or the end. BOF and EOF are
/// both true while the view has no rows. A row that satisfies the filter again
/// takes its old place.
///
/// Setting a filter again, or one of the last few filters set, costs no look at
/// the rows; one that adds "and ..." to such a filter looks at the rows of that one
/// only, and one that asks a column that does not change for a value looks at the
/// rows of that value. Moving, changing a cell and counting take the same time
/// however many rows have left the view. (The position of a row takes longer.)
///
/// Clones share rows, not position or filter.
class Recordset final : public com::Object<com::IUnknown> {
 public:
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("00000556-0000-0010-8000-00AA006D2EA4");

  Recordset();
  ~Recordset() override;
  /// A recordset over finished rows, read-only, on its first row.
  static com::Ref<Recordset> fromRowset(Rowset rows);

  CursorLocationEnum CursorLocation() const noexcept;
  void CursorLocation(CursorLocationEnum location);
  CursorTypeEnum CursorType() const noexcept;
  void CursorType(CursorTypeEnum type);
  LockTypeEnum LockType() const noexcept;
  void LockType(LockTypeEnum type);

  /// Opens an in-memory recordset from the appended fields; it is then client-side,
  /// static and updatable. kAdoInvalidArgument when there are no fields.
  void Open();
  /// Runs `source` on the open `connection` and holds its first rowset. Raises
  /// the provider's error; when no statement returns rows the recordset stays closed.
  /// Opened, it is client-side, static and read-only whatever was asked for.
  void Open(std::string_view source, const com::Ref<Connection>& connection,
            CursorTypeEnum cursorType = adOpenUnspecified,
            LockTypeEnum lockType = adLockUnspecified, int options = adOptionUnspecified);
  /// Lets go of rows, columns and connection.
  void Close();
  ObjectStateEnum State() const noexcept;

  /// The connection, nothing once cleared or for in-memory rows.
  com::Ref<Connection> ActiveConnection() const;
  /// Nothing disconnects.
  void ActiveConnection(com::Ref<Connection> connection);

  /// The next rowset of the batch as a recordset of its own; nothing when there is
  /// none. This one stays open. Rowsets need no connection: the batch has ended.
  com::Ref<Recordset> NextRecordset();

  ado::Fields Fields() { return ado::Fields(*this); }

  bool BOF() const;
  bool EOF_() const;  // EOF is a macro of <cstdio>
  /// Rows in the view.
  std::int64_t RecordCount() const;
  void MoveFirst();
  void MoveNext();
  void MovePrevious();
  void MoveLast();
  /// 1-based position in the view; -1 when the current row is not in it.
  std::int64_t AbsolutePosition() const;

  /// Appends a row of Null values (in-memory recordsets) and makes it current, even
  /// if it does not satisfy the filter.
  /// kAdoNotSupported on a read-only recordset.
  void AddNew();
  /// Ends AddNew and changes of fields; changes are in the rows already, Update
  /// only confirms them.
  void Update();
  /// Removes the current row.
  void Delete();

  const std::string& Filter() const noexcept;
  /// Empty text shows all rows. Moves to the first row of the view. Raises
  /// kAdoInvalidArgument naming what was expected and where.
  void Filter(std::string_view criteria);

  /// The same rows, unfiltered, on the first row. Read-only if this one is, or if
  /// adLockReadOnly is asked for.
  com::Ref<Recordset> Clone(LockTypeEnum lockType = adLockUnspecified) const;

  // By position, without a Field in between; for code that walks many rows.
  std::size_t fieldCount() const noexcept;
  const FieldDefinition& definition(std::size_t field) const;
  /// kAdoItemNotFound naming the column.
  std::size_t fieldIndex(std::string_view name) const;
  /// Valid until a row is added or the cell changes.
  const Variant& GetValue(std::size_t field) const;
  /// The current row's cells in the order of the fields; valid until a row is added.
  std::span<const Variant> GetRow() const;
  /// Converts to the column's type (numbers from text, decimals rounded to the
  /// column's scale, texts longer than the column refused) or raises
  /// kAdoDataConversion naming column and value; kAdoNotSupported when read-only.
  void SetValue(std::size_t field, const Variant& value);
  /// What SetValue would store, for who must know before anything changes; raises as it.
  Variant ConvertedValue(std::size_t field, const Variant& value) const;
  /// Writes what ConvertedValue answered, each with its column, without converting it again.
  void SetConvertedValues(std::span<const std::pair<std::size_t, Variant>> values);

 private:
  friend class Fields;
  friend class Connection;
  struct Body;
  /// Over the first of `results`, the others behind NextRecordset; closed when
  /// there are none.
  static com::Ref<Recordset> fromResults(std::vector<Rowset> results,
                                         com::Ref<Connection> connection);
  void* find(const com::Guid& iid) noexcept override;
  void requireOpen() const;
  void requireNotOpen() const;
  std::size_t currentRow() const;
  void requireWritable() const;
  void appendField(FieldDefinition field);

  std::unique_ptr<Body> body_;
};

using RecordsetRef = com::Ref<Recordset>;

}  // namespace velmora::ado
