#include "settlement/group_filters.h"

#include <string>
#include <vector>

#include "frame/call/operation.h"
#include "frame/call/text.h"

namespace velmora::settlement {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::VarType;

namespace {

struct GroupField {
  std::string name;  ///< as the filter names it
  ado::DataTypeEnum type;
  std::size_t filterColumn, keyColumn;
};

std::vector<GroupField> groupFields(const ado::Recordset& rows, const Dictionary& dDictSwitch) {
  std::vector<GroupField> fields;
  for (std::size_t i = 0; i < dDictSwitch.Count(); ++i) {
    const std::string& name = dDictSwitch.Key(i);
    const std::size_t column = rows.fieldIndex(name);
    fields.push_back({name, rows.definition(column).type, column,
                      rows.fieldIndex(dDictSwitch.Item(i).toText())});
  }
  return fields;
}

std::string textOf(const Variant& value) {
  return value.isNull() ? std::string() : value.toText();
}

/// A text in quotes, quotes inside it doubled.
std::string quoted(const std::string& text) {
  std::string literal = "'";
  for (const char c : text) literal.append(c == '\'' ? 2 : 1, c);
  return literal += '\'';
}

/// The value as the recordset's filter takes it for a column of this type. Null gives
/// nothing to compare with, which the recordset refuses for all but texts.
std::string filterValue(const Variant& value, ado::DataTypeEnum type) {
  switch (type) {
    case ado::adBSTR:
    case ado::adChar:
    case ado::adWChar:
    case ado::adVarChar:
    case ado::adLongVarChar:
    case ado::adVarWChar:
    case ado::adLongVarWChar:
      return quoted(textOf(value));
    case ado::adDate:
    case ado::adDBDate:
      return quoted(value.type() == VarType::date ? value.toDate().toDateText() : textOf(value));
    case ado::adDBTimeStamp:
      return value.isNull() ? std::string() : '#' + value.toText() + '#';
    default:
      return textOf(value);
  }
}

std::string groupKey(const ado::Recordset& rows, const std::vector<GroupField>& fields) {
  std::string key;
  for (const GroupField& field : fields) {
    if (!key.empty()) key += '|';
    key += textOf(rows.GetValue(field.keyColumn));
  }
  return key;
}

std::string groupFilter(const ado::Recordset& rows, const std::vector<GroupField>& fields) {
  std::string filter;
  for (const GroupField& field : fields) {
    if (!filter.empty()) filter += " and ";
    filter += field.name + " = " + filterValue(rows.GetValue(field.filterColumn), field.type);
  }
  return filter;
}

}  // namespace

DictionaryRef BuildGroupFilters(const ado::RecordsetRef& rsSrcBill,
                                const DictionaryRef& dDictSwitch) {
  auto groups = com::make<Dictionary>();
  if (!dDictSwitch || dDictSwitch->Count() == 0) return groups;
  ado::Recordset& rows = given(rsSrcBill, "rsSrcBill");
  const auto fields = groupFields(rows, *dDictSwitch);
  for (rows.MoveFirst(); !rows.EOF_(); rows.MoveNext()) {
    const std::string key = groupKey(rows, fields);
    if (!groups->Lookup(key)) groups->Add(key, trimmed(groupFilter(rows, fields)));
  }
  return groups;
}

}  // namespace velmora::settlement
