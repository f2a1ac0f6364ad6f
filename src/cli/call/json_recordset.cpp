#include "cli/call/json_recordset.h"

#include <algorithm>
#include <optional>

#include "cli/call/field_types.h"
#include "cli/call/json_values.h"
#include "velmora/com/error.h"

namespace velmora::cli {

using collections::Decimal;
using collections::Variant;
using collections::VarType;

namespace {

constexpr std::int64_t kAnyLength = -1;
constexpr int kCurrencyScale = 4;

struct Column {
  std::string name;
  const FieldType* type = nullptr;
  std::int64_t size = kAnyLength;
  int precision = Decimal::kMaxDigits;
  std::optional<int> scale;
};

[[noreturn]] void refuseCell(const std::string& wanted, const Json& cell) {
  throw JsonError("expected " + wanted + ", got " + jsonText(cell));
}

std::int64_t wholeNumber(const Json& member, std::int64_t from, std::int64_t to) {
  if (!member.is_number_integer()) refuseCell("a whole number", member);
  const auto value = member.get<std::int64_t>();
  if (value < from || value > to)
    refuseCell("a number from " + std::to_string(from) + " to " + std::to_string(to), member);
  return value;
}

const FieldType& typeFromJson(const Json& json) {
  const FieldType* type =
      json.is_string() ? findFieldType(json.get_ref<const std::string&>()) : nullptr;
  if (type == nullptr) refuseCell("a field type such as adVarWChar", json);
  return *type;
}

void readMember(Column& column, const std::string& name, const Json& value) {
  if (name == "name") {
    if (!value.is_string()) refuseCell("a text", value);
    column.name = value.get<std::string>();
  } else if (name == "type") {
    column.type = &typeFromJson(value);
  } else if (name == "size") {
    column.size = wholeNumber(value, kAnyLength, INT32_MAX);
  } else if (name == "precision") {
    column.precision = static_cast<int>(wholeNumber(value, 1, Decimal::kMaxDigits));
  } else if (name == "scale") {
    column.scale = static_cast<int>(wholeNumber(value, 0, Decimal::kMaxDigits));
  } else {
    throw JsonError("a field has name, type, size, precision and scale only");
  }
}

Column columnFromJson(const Json& json) {
  if (!json.is_object()) refuseCell("a field such as {\"name\":...,\"type\":...}", json);
  Column column;
  for (const auto& [name, value] : json.items()) {
    try {
      readMember(column, name, value);
    } catch (JsonError& error) {
      error.within(name);
      throw;
    }
  }
  if (column.type == nullptr) throw JsonError("the field has no type");
  return column;
}

Decimal decimalCell(const Json& cell) {
  if (cell.is_number_integer()) return cell.get<std::int64_t>();
  const auto value =
      cell.is_string() ? Decimal::tryParse(cell.get_ref<const std::string&>()) : std::nullopt;
  if (!value) refuseCell("an amount as text such as \"12.50\"", cell);
  return *value;
}

Variant amountCell(const Column& column, const Json& cell) {
  const Decimal value = decimalCell(cell);
  if (value.rounded(*column.scale) != value)
    refuseCell("at most " + std::to_string(*column.scale) + " decimals", cell);
  return value;
}

Variant dateCell(const Json& cell) {
  const auto value = cell.is_string()
                         ? collections::Date::tryParse(cell.get_ref<const std::string&>())
                         : std::nullopt;
  if (!value) refuseCell("a date as text such as \"2009-03-01\"", cell);
  return *value;
}

Variant valueCell(const Json& cell, bool fits, const char* wanted) {
  if (!fits) refuseCell(wanted, cell);
  return valueFromJson(cell);
}

Variant cellFromJson(const Column& column, const Json& cell) {
  if (cell.is_null()) return collections::Null();
  switch (column.type->kind) {
    case CellKind::boolean:
      return valueCell(cell, cell.is_boolean(), "true or false");
    case CellKind::integer:
      return valueCell(cell, cell.is_number_integer(), "a whole number");
    case CellKind::real:
      return valueCell(cell, cell.is_number(), "a number");
    case CellKind::decimal:
      return amountCell(column, cell);
    case CellKind::date:
      return dateCell(cell);
    case CellKind::text:
      return valueCell(cell, cell.is_string(), "a text");
    case CellKind::any:
      break;
  }
  return valueFromJson(cell);
}

/// Runs `read` on every element; a failure gets the element's place in front.
template <class Read>
void forEachElement(const Json& list, const char* name, Read read) {
  if (!list.is_array()) refuseCell(std::string("an array of ") + name, list);
  for (std::size_t i = 0; i < list.size(); ++i) {
    try {
      read(list[i]);
    } catch (JsonError& error) {
      error.within(std::string(name) + "[" + std::to_string(i) + "]");
      throw;
    }
  }
}

/// Gives the decimal columns without a scale the longest fraction among their cells.
void settleScales(std::vector<Column>& columns, const Json& rows) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Column& column = columns[i];
    if (column.type->kind != CellKind::decimal) continue;
    if (column.type->type == ado::adCurrency) column.scale = kCurrencyScale;
    if (column.scale) continue;
    int longest = 0;
    for (const Json& row : rows) {
      if (!row.is_array() || i >= row.size() || !row[i].is_string()) continue;
      if (const auto value = Decimal::tryParse(row[i].get_ref<const std::string&>()))
        longest = std::max(longest, value->scale());
    }
    column.scale = longest;
  }
}

void appendColumn(ado::Recordset& recordset, const Column& column) {
  const bool decimal = column.type->kind == CellKind::decimal;
  recordset.Fields().Append(column.name, column.type->type, column.size,
                            decimal ? column.precision : 0, column.scale.value_or(0));
}

void appendColumns(ado::Recordset& recordset, const std::vector<Column>& columns) {
  if (columns.empty()) throw JsonError("expected at least one field", "fields");
  for (std::size_t i = 0; i < columns.size(); ++i) {
    try {
      appendColumn(recordset, columns[i]);
    } catch (const com::Error& error) {
      throw JsonError(error.description(), "fields[" + std::to_string(i) + "]");
    }
  }
}

void appendRow(ado::Recordset& recordset, const std::vector<Column>& columns, const Json& row) {
  if (!row.is_array() || row.size() != columns.size())
    refuseCell("an array of " + std::to_string(columns.size()) + " cells", row);
  recordset.AddNew();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    try {
      recordset.SetValue(i, cellFromJson(columns[i], row[i]));
    } catch (JsonError& error) {
      error.within(columns[i].name);
      throw;
    } catch (const com::Error& error) {
      throw JsonError(error.description(), columns[i].name);
    }
  }
  recordset.Update();
}

Json fieldToJson(const ado::FieldDefinition& field) {
  const FieldType* type = findFieldType(field.type);
  if (type == nullptr)
    throw JsonError("column " + field.name + " has the type " + std::to_string(field.type) +
                    ", which has no JSON form");
  Json json = Json::object();
  json["name"] = field.name;
  json["type"] = type->name;
  if (type->kind == CellKind::text && field.definedSize != kAnyLength)
    json["size"] = field.definedSize;
  // A decimal column without a precision keeps every digit.
  if (type->kind == CellKind::decimal && field.type != ado::adCurrency && field.precision > 0) {
    json["precision"] = field.precision;
    json["scale"] = field.numericScale;
  }
  return json;
}

Json cellToJson(const Variant& value, ado::DataTypeEnum type) {
  if (type != ado::adVariant && value.type() == VarType::decimal)
    return value.toDecimal().toString();
  Json json = jsonFromValue(value);
  if (type != ado::adVariant && value.type() == VarType::date) return json.at("$date");
  return json;
}

}  // namespace

ado::RecordsetRef recordsetFromJson(const Json& json) {
  auto recordset = com::make<ado::Recordset>();
  if (json.is_null()) return recordset;
  if (!json.is_object() || !json.contains("fields"))
    refuseCell("a recordset with \"fields\" and \"rows\"", json);
  for (const auto& [name, value] : json.items())
    if (name != "fields" && name != "rows")
      throw JsonError("a recordset has fields and rows, not \"" + name + "\"");
  std::vector<Column> columns;
  forEachElement(json.at("fields"), "fields",
                 [&](const Json& field) { columns.push_back(columnFromJson(field)); });
  static const Json kNoRows = Json::array();
  const Json& rows = json.contains("rows") ? json.at("rows") : kNoRows;
  settleScales(columns, rows);
  appendColumns(*recordset, columns);
  recordset->Open();
  forEachElement(rows, "rows", [&](const Json& row) { appendRow(*recordset, columns, row); });
  if (!recordset->BOF()) recordset->MoveFirst();
  return recordset;
}

Json jsonFromRecordset(const ado::Recordset& recordset) {
  if (recordset.State() == ado::adStateClosed) return nullptr;
  const auto rows = recordset.Clone();
  Json fields = Json::array();
  for (std::size_t i = 0; i < rows->fieldCount(); ++i)
    fields.push_back(fieldToJson(rows->definition(i)));
  Json cells = Json::array();
  if (!rows->BOF()) rows->MoveFirst();
  for (; !rows->EOF_(); rows->MoveNext()) {
    Json row = Json::array();
    for (std::size_t i = 0; i < rows->fieldCount(); ++i)
      row.push_back(cellToJson(rows->GetValue(i), rows->definition(i).type));
    cells.push_back(std::move(row));
  }
  Json json = Json::object();
  json["fields"] = std::move(fields);
  json["rows"] = std::move(cells);
  return json;
}

}  // namespace velmora::cli
