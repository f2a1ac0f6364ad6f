#include "report/workbook/table_layout.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "report/display_width.h"

namespace velmora::report::workbook {

namespace {

std::size_t widthOfText(const std::string& text) {
  std::size_t widest = 0;
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    widest = std::max(widest, displayWidth(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return widest;
}

/// With its sign and the commas between thousands.
std::size_t widthOfAmount(const Decimal& amount) {
  const auto scale = static_cast<std::size_t>(amount.scale());
  std::size_t digits = 1;
  for (auto rest = amount.coefficient(); rest /= 10;) ++digits;
  const std::size_t whole = digits > scale ? digits - scale : 1;
  return whole + (whole - 1) / 3 + (scale ? scale + 1 : 0) + (amount.sign() < 0 ? 1 : 0);
}

std::optional<Decimal> numberOf(const Cell& cell) {
  if (const auto* amount = std::get_if<Decimal>(&cell)) return *amount;
  if (const auto* count = std::get_if<std::int64_t>(&cell)) return Decimal(*count);
  return std::nullopt;
}

}  // namespace

std::size_t widthOf(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return widthOfText(*text);
  if (const auto number = numberOf(cell)) return widthOfAmount(*number);
  if (std::holds_alternative<Date>(cell)) return std::string_view("2009-03-31").size();
  std::size_t width = 0;
  if (const auto* references = std::get_if<References>(&cell))
    for (const Reference& reference : *references) width += widthOfText(reference.text) + 2;
  return width;
}

namespace {

void survey(ColumnFacts& facts, const Cell& cell, bool summed) {
  facts.width = std::max(facts.width, widthOf(cell));
  const auto number = numberOf(cell);
  if (!number) return;
  if (!isExact(*number)) {
    facts.digits = true;
  } else if (summed) {
    facts.sum += number->toDouble();
  }
}

bool isCutIn(const Row& row) {
  return std::any_of(row.cells.begin(), row.cells.end(), [](const Cell& cell) {
    const auto* text = std::get_if<std::string>(&cell);
    return text && isCut(*text);
  });
}

bool isGrouped(const Table& table) {
  return std::any_of(table.columns.begin(), table.columns.end(),
                     [](const Column& column) { return !column.group.empty(); });
}

void addRowPlaces(const TableLayout& layout, const Part& part, Places& places) {
  for (std::size_t i = 0; i < part.rows; ++i)
    places.add(layout.table->rows[part.firstRow + i].id,
               {part.sheet, layout.firstRow() + static_cast<std::uint32_t>(i), 0});
}

/// "'Name'!C5:C20".
std::string range(const TableLayout& layout, const Part& part, std::size_t column,
                  const Places& places) {
  const auto last = layout.firstRow() + static_cast<std::uint32_t>(part.rows) - 1;
  return fmt::format("{}:{}{}", cellName(places.sheetName(part.sheet), layout.firstRow(), column),
                     columnName(column), last + 1);
}

}  // namespace

bool TableLayout::hasDigits() const {
  return std::any_of(columns.begin(), columns.end(),
                     [](const ColumnFacts& column) { return column.digits; });
}

TableLayout surveyed(const Table& table) {
  TableLayout layout{.table = &table, .grouped = isGrouped(table)};
  layout.columns.resize(table.columns.size());
  for (const Row& row : table.rows) {
    if (row.detail) layout.levels = 1;
    layout.cut = layout.cut || isCutIn(row);
    for (std::size_t i = 0; i < row.cells.size(); ++i)
      survey(layout.columns[i], row.cells[i], !row.detail);
  }
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    ColumnFacts& facts = layout.columns[i];
    constexpr std::size_t kFilterButton = 3;
    facts.width = std::max(facts.width, widthOfText(table.columns[i].name) + kFilterButton);
    if (!table.totals.empty()) survey(facts, table.totals[i], false);
  }
  return layout;
}

void placeOnSheets(TableLayout& layout, std::uint32_t sheetRows, SheetNames& names,
                   Places& places) {
  layout.top = kRowsAboveHeads;
  const std::uint32_t others = layout.firstRow() + 1;  // a row for the totals
  const std::size_t capacity = sheetRows > others ? sheetRows - others : 1;
  const std::size_t rows = layout.table->rows.size();
  std::size_t first = 0;
  do {
    const std::string name = names.add(layout.table->title, layout.parts.size() + 1);
    layout.parts.push_back({places.addSheet(name), first, std::min(capacity, rows - first)});
    addRowPlaces(layout, layout.parts.back(), places);
    first += layout.parts.back().rows;
  } while (first < rows);
  places.add(layout.table->id, {layout.parts.front().sheet, 0, 0});
}

void placeAt(TableLayout& layout, std::size_t sheet, std::uint32_t top, Places& places) {
  layout.top = top;
  layout.wrapped = true;
  layout.parts.push_back({sheet, 0, layout.table->rows.size()});
  addRowPlaces(layout, layout.parts.back(), places);
}

std::optional<std::string> totalFormula(const TableLayout& layout, std::size_t column,
                                        const Places& places) {
  const auto total = numberOf(layout.table->totals[column]);
  const ColumnFacts& facts = layout.columns[column];
  if (!total || facts.digits || layout.table->rows.empty()) return std::nullopt;
  if (Decimal::fromDouble(facts.sum).rounded(total->scale()) != *total) return std::nullopt;
  std::string sum;
  for (const Part& part : layout.parts) {
    const std::string amounts = range(layout, part, column + layout.levels, places);
    const bool first = sum.empty();
    if (layout.levels) {
      sum += fmt::format("{}SUMIF({},1,{})", first ? "" : "+", range(layout, part, 0, places),
                         amounts);
    } else {
      sum += fmt::format("{}{}", first ? "SUM(" : ",", amounts);
    }
  }
  return fmt::format("ROUND({}{},{})", sum, layout.levels ? "" : ")", total->scale());
}

}  // namespace velmora::report::workbook
