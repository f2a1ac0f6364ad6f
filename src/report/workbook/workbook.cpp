#include "report/workbook.h"

#include <deque>

#include "report/workbook/book.h"
#include "report/workbook/summary.h"
#include "report/workbook/table_sheets.h"

namespace velmora::report {

using namespace workbook;  // NOLINT(google-build-using-namespace): the door to it

namespace {

/// The tables that have sheets of their own, placed in the order of the report.
std::deque<TableLayout> tablesOnSheets(const Report& report, std::uint32_t sheetRows,
                                       SheetNames& names, Places& places) {
  std::deque<TableLayout> layouts;
  for (const Section& section : report.sections) {
    const bool first = &section == &report.sections.front();
    for (const Block& block : section.blocks) {
      const auto* table = std::get_if<Table>(&block);
      if (!table || (first && Summary::holds(*table))) continue;
      layouts.push_back(surveyed(*table));
      layouts.back().inFirstSection = first;
      placeOnSheets(layouts.back(), sheetRows, names, places);
    }
  }
  return layouts;
}

}  // namespace

void writeWorkbook(const std::string& file, const Report& report, const Words& words,
                   std::uint32_t sheetRows) {
  Places places;
  SheetNames names;
  places.addSheet(names.add(words("摘要")));
  const std::deque<TableLayout> tables = tablesOnSheets(report, sheetRows, names, places);
  const Summary summary(report, tables, words, places);
  Book book(file, report, places);
  summary.write(book);
  for (const TableLayout& table : tables) writeTableSheets(book, table, words);
  book.close();
}

}  // namespace velmora::report
