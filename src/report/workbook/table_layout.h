#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "report/model.h"
#include "report/workbook/book.h"
#include "report/workbook/texts.h"

namespace velmora::report::workbook {

/// What the rows of a column have in common.
struct ColumnFacts {
  std::size_t width = 0;  ///< of its widest text
  bool digits = false;    ///< has amounts that stand as text, with all their digits
  double sum = 0;         ///< of the rows that are no details, as a reader's program adds them
};

/// The rows of a table that stand on one sheet.
struct Part {
  std::size_t sheet = 0, firstRow = 0, rows = 0;
};

/// Where the cells of a table stand: on sheets of their own, the heads below a title, or in
/// the midst of another sheet.
struct TableLayout {
  const Table* table = nullptr;
  std::uint32_t top = 0;   ///< row of the first head
  bool grouped = false;    ///< has a row of group heads above the heads
  std::size_t levels = 0;  ///< 1 when a first column tells rows from their details
  std::vector<ColumnFacts> columns = {};
  std::vector<Part> parts = {};
  bool inFirstSection = false;
  bool cut = false;      ///< has texts longer than a cell holds
  bool wrapped = false;  ///< shares its columns with others: every text is wrapped

  std::uint32_t headRow() const { return top + (grouped ? 1U : 0U); }
  std::uint32_t firstRow() const { return headRow() + 1; }
  std::size_t width() const { return levels + table->columns.size(); }
  bool hasDigits() const;
};

/// Rows above the heads of a table that has its own sheets: title, way back, notes.
constexpr std::uint32_t kRowsAboveHeads = 3;

/// Columns that a cell takes, East Asian characters two.
std::size_t widthOf(const Cell& cell);

/// Surveys the rows; without places yet.
TableLayout surveyed(const Table& table);
/// Gives the rows sheets of at most `sheetRows` rows, and everything with an id its place.
void placeOnSheets(TableLayout& layout, std::uint32_t sheetRows, SheetNames& names, Places& places);
/// Puts the heads on the row `top` of a sheet, and everything with an id to its place.
void placeAt(TableLayout& layout, std::size_t sheet, std::uint32_t top, Places& places);

/// The formula of a column's total over all its sheets, without "="; nothing where a reader's
/// program would not come to the model's total (amounts that it cannot hold, say).
std::optional<std::string> totalFormula(const TableLayout& layout, std::size_t column,
                                        const Places& places);

}  // namespace velmora::report::workbook
