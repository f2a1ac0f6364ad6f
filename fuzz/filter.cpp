// Criteria of recordset filters, one a line, over rows that change between them.

#include <algorithm>

#include "common/fuzz.h"
#include "platform/ado/filter_parser.h"
#include "velmora/ado/recordset.h"
#include "velmora/com/error.h"

namespace velmora::fuzz {
namespace {

using namespace ado;
using collections::Date;
using collections::Null;

RecordsetRef everyKind() {
  auto rows = com::make<Recordset>();
  rows->Fields().Append("FID", adInteger);
  rows->Fields().Append("FName", adVarWChar, 40);
  rows->Fields().Append("FAmount", adNumeric, 0, 20, 4);
  rows->Fields().Append("FDate", adDate);
  rows->Fields().Append("FRate", adDouble);
  rows->Fields().Append("FDone", adBoolean);
  rows->Fields().Append("单位", adVarWChar);
  rows->Fields().Append("FAny", adVariant);
  rows->Open();
  const Date day = Date::ymd(2009, 3, 1);
  for (const std::vector<Variant>& cells : std::vector<std::vector<Variant>>{
           {1, "Acme", "100.1", day, 0.1, true, "客户", 5},
           {2, "acme north", "-0.5", day, 6.8275, false, "客户乙", "5"},
           {3, "O'Hara", "99999999999999.9999", day, -1.0, true, "", 5.0},
           {4, "100%", "0", Date::ymd(1999, 12, 31), 0.0, false, "a", day},
           {5, Null(), Null(), Null(), Null(), Null(), Null(), Null()},
           {5, "acme", "100.1", Null(), 1e300, true, "客户", true}}) {
    rows->AddNew();
    for (std::size_t i = 0; i < cells.size(); ++i) rows->SetValue(i, cells[i]);
  }
  return rows;
}

std::vector<FieldDefinition> fieldsOf(const Recordset& rows) {
  std::vector<FieldDefinition> fields;
  for (std::size_t i = 0; i < rows.fieldCount(); ++i) fields.push_back(rows.definition(i));
  return fields;
}

using Rows = std::vector<std::vector<Variant>>;

Rows shown(Recordset& rows) {
  Rows all;
  if (!rows.BOF()) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext())
    all.emplace_back(rows.GetRow().begin(), rows.GetRow().end());
  return all;
}

/// The view has the rows that satisfy the criteria, looked at one by one.
void showsWhatSatisfies(Recordset& rows, const std::string& criteria) {
  const FilterCriteria wanted = parseFilter(criteria, fieldsOf(rows));
  Rows expected;
  for (auto& row : shown(*rows.Clone()))
    if (wanted.satisfiedBy(row.data())) expected.push_back(std::move(row));
  require(rows.RecordCount() == static_cast<std::int64_t>(expected.size()), "a wrong count",
          criteria);
  require(shown(rows) == expected, "wrong rows", criteria);
}

/// A cell of the view's first row becomes that of its last row.
void change(Recordset& rows, std::size_t turn) {
  if (rows.RecordCount() == 0) return;
  const std::size_t field = turn % rows.fieldCount();
  rows.MoveLast();
  const Variant value = rows.GetValue(field);
  rows.MoveFirst();
  rows.SetValue(field, value);
}

}  // namespace

void run(std::string_view input) {
  const RecordsetRef rows = everyKind();
  std::size_t turn = 0;
  while (!input.empty()) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string criteria(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    try {
      rows->Filter(criteria);
      showsWhatSatisfies(*rows, criteria);
      change(*rows, turn++);
      showsWhatSatisfies(*rows, criteria);
    } catch (const com::Error& error) {
      requireReadable(error.description(), criteria);
    }
  }
}

}  // namespace velmora::fuzz
