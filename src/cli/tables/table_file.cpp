#include "cli/tables/table_file.h"

#include <fmt/format.h>
#include <fstream>
#include <iterator>

#include "cli/call/json_recordset.h"
#include "cli/failure.h"
#include "cli/new_file.h"
#include "cli/output/result_writer.h"
#include "cli/tables/csv_reader.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::cli {

using ado::RecordsetRef;
using ado::Variant;

namespace {

std::string contentOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw Failure("cannot read " + file);
  std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) throw Failure("cannot read " + file);
  return content;
}

void appendColumn(ado::Recordset& table, const std::string& name, ColumnKind kind) {
  switch (kind) {
    case ColumnKind::integer:
      return table.Fields().Append(name, ado::adBigInt);
    case ColumnKind::amount:
      return table.Fields().Append(name, ado::adDecimal);  // keeps every digit
    case ColumnKind::text:
      return table.Fields().Append(name, ado::adVarWChar, -1);
  }
}

/// A number has to be one as a whole: a column that takes 1.5 for 1 settles wrongly.
Variant cellValue(const CsvCell& cell, ado::DataTypeEnum type) {
  if (cell.text.empty() && !cell.quoted) return collections::Null();
  if (type == ado::adVarWChar) return cell.text;
  const auto number = collections::Decimal::tryParse(cell.text);
  if (!number) throw Failure("\"" + cell.text + "\" is no number");
  if (type == ado::adBigInt && number->truncated(0) != *number)
    throw Failure("\"" + cell.text + "\" is no whole number");
  return *number;
}

void appendRow(ado::Recordset& table, const CsvRow& row) {
  table.AddNew();
  for (std::size_t i = 0; i < row.cells.size(); ++i) {
    const ado::FieldDefinition& column = table.definition(i);
    try {
      table.SetValue(i, cellValue(row.cells[i], column.type));
    } catch (const std::exception& error) {
      throw Failure(fmt::format("line {}, column {}: {}", row.line, column.name, error.what()));
    }
  }
  table.Update();
}

RecordsetRef fromCsv(const std::string& text, const KindOfColumn& kindOf) {
  const std::vector<CsvRow> rows = parseCsv(text);
  if (rows.empty()) throw Failure("empty; expected a header line with the names of columns");
  auto table = com::make<ado::Recordset>();
  for (const CsvCell& name : rows.front().cells) appendColumn(*table, name.text, kindOf(name.text));
  table->Open();
  for (std::size_t i = 1; i < rows.size(); ++i) appendRow(*table, rows[i]);
  if (rows.size() > 1) table->MoveFirst();
  return table;
}

RecordsetRef fromJson(const std::string& text) {
  const Json json = parseJson(text);
  auto table = recordsetFromJson(json.contains("$recordset") ? json.at("$recordset") : json);
  if (table->State() == ado::adStateClosed) throw Failure("expected a recordset, got null");
  return table;
}

}  // namespace

RecordsetRef readTable(const std::string& file, const KindOfColumn& kindOf) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";  // editors begin UTF-8 files with it
  const std::string text = contentOf(file);
  const auto first = text.find_first_not_of(" \t\r\n", text.starts_with(mark) ? mark.size() : 0);
  try {
    return first != std::string::npos && text[first] == '{' ? fromJson(text)
                                                            : fromCsv(text, kindOf);
  } catch (const std::exception& error) {
    throw Failure(file + ": " + error.what());
  }
}

RecordsetRef withColumns(const RecordsetRef& table, const KindOfColumn& kindOf,
                         const std::vector<AddedColumn>& columns) {
  auto wider = com::make<ado::Recordset>();
  const std::size_t had = table->fieldCount();
  for (std::size_t i = 0; i < had; ++i) {
    const ado::FieldDefinition& field = table->definition(i);
    if (kindOf(field.name) == ColumnKind::amount)
      appendColumn(*wider, field.name, ColumnKind::amount);
    else
      wider->Fields().Append(field.name, field.type, field.definedSize, field.precision,
                             field.numericScale);
  }
  for (const AddedColumn& column : columns) appendColumn(*wider, column.name, column.kind);
  wider->Open();
  const auto rows = table->Clone();
  try {
    for (; !rows->EOF_(); rows->MoveNext()) {
      wider->AddNew();
      for (std::size_t i = 0; i < had; ++i) wider->SetValue(i, rows->GetValue(i));
      for (std::size_t i = 0; i < columns.size(); ++i)
        wider->SetValue(had + i, columns[i].value(*rows));
      wider->Update();
    }
  } catch (const com::Error& error) {
    throw Failure(error.description());
  }
  if (wider->RecordCount() > 0) wider->MoveFirst();
  return wider;
}

bool hasColumn(const ado::Recordset& table, const std::string& name) {
  for (std::size_t i = 0; i < table.fieldCount(); ++i)
    if (collections::equalsIgnoringCase(table.definition(i).name, name)) return true;
  return false;
}

void writeTableFile(const std::string& file, const ado::Recordset& rows, bool replace) {
  NewFile made(file, replace);
  {
    std::ofstream out(made.unfinished(), std::ios::binary);
    if (file.ends_with(".json"))
      out << jsonText(jsonFromRecordset(rows)) << '\n';
    else
      writeCsv(out, *rows.Clone());
    out.close();
    if (!out) throw Failure("cannot write " + file);
  }
  made.complete();
}

}  // namespace velmora::cli
