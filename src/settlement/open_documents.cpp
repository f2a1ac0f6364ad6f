#include "settlement/open_documents.h"

#include <algorithm>

#include "settlement/numbers.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;
using collections::Dictionary;

namespace {

/// The fewest decimals among the columns; those of a number where there are none.
int fewestDecimals(const ado::Recordset& rows,
                   std::initializer_list<std::optional<std::size_t>> columns) {
  int decimals = Decimal::kMaxDigits;
  for (const auto& column : columns)
    if (column) decimals = std::min(decimals, rows.definition(*column).decimals());
  return decimals;
}

}  // namespace

DocumentColumns::DocumentColumns(const ado::Recordset& rows, const Dictionary& fieldMap,
                                 const Dictionary& copyMap)
    : FRemark(rows.fieldIndex("FRemark")) {
  for (std::size_t field = 0; field < fields.size(); ++field) {
    const std::string column = fieldMap.Value(kDocumentFields[field]).toText();
    if (!column.empty()) fields[field] = rows.fieldIndex(column);
  }
  for (std::size_t i = 0; i < copyMap.Count(); ++i) {
    const std::string rule = copyMap.Item(i).toText();
    copies.push_back(rows.fieldIndex(std::string_view(rule).substr(rule.find('|') + 1)));
  }
  quantityDecimals = fewestDecimals(rows, {fields[FCheckQty], fields[FRemainQty]});
}

Decimal OpenDocument::number(DocumentField field) const {
  if (!has(field)) return 0;
  return numberIn(current(column(field)), [&] { return described(column(field)); });
}

int OpenDocument::places(DocumentField field) const {
  return decimalPlaces(number(field), [&] { return described(column(field)); });
}

void OpenDocument::set(DocumentField field, const Decimal& value) {
  // Rounded to the column's decimals, documents and settlement rows would differ.
  if (numberIn(change(column(field), value), [&] { return described(column(field)); }) != value)
    throw com::Error(com::error::kAdoDataConversion, "clsPublic",
                     described(column(field)) + ": " + value.normalized().toString() +
                         " has more decimals than the column");
}

void OpenDocument::add(DocumentField field, const Decimal& change) {
  set(field, number(field) + change);
}

void OpenDocument::update() {
  rows_.SetConvertedValues(changes_);
  changes_.clear();
}

const ado::Variant& OpenDocument::current(std::size_t column) const {
  for (const auto& [changed, value] : changes_)
    if (changed == column) return value;
  return cells_[column];
}

const ado::Variant& OpenDocument::change(std::size_t column, const ado::Variant& value) {
  try {
    return changes_.emplace_back(column, rows_.ConvertedValue(column, value)).second;
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(),
                     described(column) + ": " + error.description());
  }
}

std::string OpenDocument::described(std::size_t column) const {
  const auto shown = [this](const char* name) {
    const ado::Variant& value = cells_[rows_.fieldIndex(name)];
    return value.isNull() ? std::string("Null") : value.toText();
  };
  return std::string(side_.name) + ", FBillID " + shown("FBillID") + ", FType " + shown("FType") +
         ", FEntryID " + shown("FEntryID") + ", column " + rows_.definition(column).name;
}

}  // namespace velmora::settlement
