#pragma once

#include "report/words.h"
#include "report/workbook/book.h"
#include "report/workbook/table_layout.h"

namespace velmora::report::workbook {

/// The heads, one row or two, of a table on `sheet`.
void writeHeads(Sheet& sheet, const TableLayout& layout, const Words& words);
/// A row of the table to the sheet's row `at`.
void writeRow(Sheet& sheet, const TableLayout& layout, const Row& row, std::uint32_t at);
void writeTotals(Sheet& sheet, const TableLayout& layout, std::uint32_t at);
/// Rules that colour differences among `rows` rows.
void addDifferenceRules(const Sheet& sheet, const TableLayout& layout, std::size_t rows);

/// The sheets of a table that has its own: title, way back, notes, heads, rows and totals,
/// with filters, and heads that stay and are repeated in print.
void writeTableSheets(Book& book, const TableLayout& layout, const Words& words);

}  // namespace velmora::report::workbook
