#include "settlement/switch_rows.h"

#include "settlement/numbers.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;
using collections::Dictionary;
using collections::Variant;

namespace {

/// Adds to an error of the recordset which row it was.
template <class Access>
auto named(const std::string& where, Access access) {
  try {
    return access();
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(), where + ": " + error.description());
  }
}

}  // namespace

Decimal SwitchRows::number(const std::string& column) const {
  return numberIn(value(column), [&] { return where(column); });
}

std::string SwitchRows::where(const std::string& column) const {
  return "row " + std::to_string(row_) + ", column " + column;
}

bool RecordsetRows::next() {
  if (row_++ > 0)
    rows_.MoveNext();
  else if (rows_.RecordCount() > 0)
    rows_.MoveFirst();
  return !rows_.EOF_();
}

bool RecordsetRows::atLast() const {
  return static_cast<std::int64_t>(row_) >= rows_.RecordCount();
}

Variant RecordsetRows::value(const std::string& column) const {
  return named(where(column), [&] { return rows_.GetValue(rows_.fieldIndex(column)); });
}

void RecordsetRows::set(const std::string& column, const Variant& value) {
  named(where(column), [&] { rows_.SetValue(rows_.fieldIndex(column), value); });
}

int RecordsetRows::decimals(const std::string& column) const {
  return named(where(column),
               [&] { return rows_.definition(rows_.fieldIndex(column)).decimals(); });
}

bool VectorRows::next() {
  if (row_ == rows_.Size()) return false;
  const Variant& item = rows_.Item(row_++);
  current_ = item.type() == collections::VarType::object ? item.toObject().as<Dictionary>()
                                                         : collections::DictionaryRef();
  if (!current_)
    throw com::Error(com::error::kTypeMismatch, "clsPublic",
                     "row " + std::to_string(row_) + " is no Dictionary");
  return true;
}

Variant VectorRows::value(const std::string& column) const {
  if (!current_->Lookup(column))
    throw com::Error(com::error::kInvalidArgument, "clsPublic",
                     where(column) + ": the row has no such column");
  return current_->Value(column);
}

void VectorRows::set(const std::string& column, const Variant& value) {
  current_->Set(column, value);
}

}  // namespace velmora::settlement
