// CSV files: what is read, written and read again stays the same.

#include <sstream>

#include "cli/failure.h"
#include "cli/output/result_writer.h"
#include "cli/tables/csv_reader.h"
#include "cli/tables/table_file.h"
#include "common/fuzz.h"

namespace velmora::fuzz {
namespace {

using namespace cli;

/// The kinds take turns by the length of the name.
ColumnKind kindOf(const std::string& name) {
  constexpr ColumnKind kinds[] = {ColumnKind::integer, ColumnKind::amount, ColumnKind::text};
  return kinds[name.size() % 3];
}

std::string written(ado::Recordset& table) {
  std::ostringstream out;
  writeCsv(out, table);
  return out.str();
}

void readRows(std::string_view input) {
  const auto rows = parseCsv(input);
  for (const CsvRow& row : rows)
    require(row.cells.size() == rows.front().cells.size(), "rows of unequal width", input);
}

void readsBackTheSame(std::string_view input) {
  const MemoryFile file(input);
  const auto table = readTable(file.path(), kindOf);
  const std::string once = written(*table);
  const MemoryFile copy(once);
  // A row of a single Null is a blank line, which is no row.
  if (table->fieldCount() == 1) return;
  try {
    require(written(*readTable(copy.path(), kindOf)) == once, "read back differently", once);
  } catch (const Failure& failure) {
    require(false, "what was written cannot be read", failure.what() + ("\n" + once));
  }
}

}  // namespace

void run(std::string_view input) {
  try {
    readRows(input);
    readsBackTheSame(input);
  } catch (const Failure& failure) {
    requireReadable(failure.what(), input);
  }
}

}  // namespace velmora::fuzz
