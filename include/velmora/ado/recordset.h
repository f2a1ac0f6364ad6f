#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
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
  /// Adds a column to a recordset that is not open. kAdoObjectOpen when it is,
  /// kDuplicateKey when the name is taken.
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
/// Filter shows only the rows that satisfy
///   column operator value [and|or column operator value ...], parentheses around
///   groups; operators = <> < > <= >= like (with * or % at the ends); values are
///   numbers, 'text' (a doubled quote stands for one) or #date# / 'date'; column
///   names may be in [brackets]; texts compare without regard to case.
/// A changed row that no longer satisfies the filter leaves the view at once; the
/// current position then stands before the next row, which MoveNext reaches.
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

  /// Opens an in-memory recordset from the appended fields.
  void Open();
  /// Runs `source` on the open `connection` and holds its first rowset. Raises
  /// the provider's error; when no statement returns rows the recordset stays closed.
  void Open(std::string_view source, const com::Ref<Connection>& connection,
            CursorTypeEnum cursorType = adOpenUnspecified,
            LockTypeEnum lockType = adLockUnspecified, int options = adOptionUnspecified);
  void Close();
  ObjectStateEnum State() const noexcept;

  /// The connection, nothing once cleared or for in-memory rows.
  com::Ref<Connection> ActiveConnection() const;
  /// Nothing disconnects.
  void ActiveConnection(com::Ref<Connection> connection);

  /// The next result of the batch; nothing when there is none.
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
  /// 1-based position in the view; -1 without a current row.
  std::int64_t AbsolutePosition() const;

  /// Appends a row of Null values (in-memory recordsets) and makes it current.
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

  com::Ref<Recordset> Clone(LockTypeEnum lockType = adLockUnspecified) const;

  // By position, without a Field in between; for code that walks many rows.
  std::size_t fieldCount() const noexcept;
  const FieldDefinition& definition(std::size_t field) const;
  /// kAdoItemNotFound naming the column.
  std::size_t fieldIndex(std::string_view name) const;
  const Variant& GetValue(std::size_t field) const;
  /// Converts to the column's type (numbers from text, decimals rounded to the
  /// column's scale, texts longer than the column refused) or raises
  /// kAdoDataConversion naming column and value; kAdoNotSupported when read-only.
  void SetValue(std::size_t field, const Variant& value);

 private:
  friend class Fields;
  friend class Connection;
  friend class Command;
  struct Data;  // fields, rows and views shared by clones
  struct State_;
  void* find(const com::Guid& iid) noexcept override;

  std::unique_ptr<State_> state_;
};

using RecordsetRef = com::Ref<Recordset>;

}  // namespace velmora::ado
