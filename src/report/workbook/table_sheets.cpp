#include "report/workbook/table_sheets.h"

#include <algorithm>
#include <fmt/format.h>

namespace velmora::report::workbook {

namespace {

constexpr std::size_t kNarrowest = 8, kWidest = 60, kMostFrozen = 60;
constexpr std::size_t kSummarySheet = 0;

lxw_col_t col(std::size_t column) {
  return static_cast<lxw_col_t>(column);
}

std::size_t widthOfColumn(const ColumnFacts& facts) {
  return std::clamp(facts.width + 2, kNarrowest, kWidest);
}

bool wraps(const ColumnFacts& facts) {
  return facts.width + 2 > kWidest;
}

bool isNumeric(Kind kind) {
  return kind == Kind::count || kind == Kind::amount;
}

void setColumnWidths(Sheet& sheet, const TableLayout& layout) {
  if (layout.levels) sheet.setWidth(0, kNarrowest);
  for (std::size_t i = 0; i < layout.columns.size(); ++i)
    sheet.setWidth(layout.levels + i, widthOfColumn(layout.columns[i]));
}

/// Columns at the left that tell what a row is about, if they leave room for others.
std::size_t frozenColumns(const TableLayout& layout) {
  std::size_t count = 0, width = layout.levels * kNarrowest;
  for (; count < layout.columns.size() && layout.table->columns[count].key; ++count)
    width += widthOfColumn(layout.columns[count]);
  return width > kMostFrozen || count == layout.columns.size() ? 0 : layout.levels + count;
}

std::size_t linksOf(const TableLayout& layout, const Part& part, const Places& places) {
  std::size_t links = 1;  // the way back
  for (std::size_t i = 0; i < part.rows; ++i)
    for (const Cell& cell : layout.table->rows[part.firstRow + i].cells)
      if (const auto* references = std::get_if<References>(&cell))
        if (places.of(*references)) ++links;
  return links;
}

std::string notesOf(const TableLayout& layout, std::size_t part, const Places& places,
                    const Words& words) {
  std::string notes;
  const auto note = [&](const std::string& text) {
    if (!notes.empty()) notes += "  ";
    notes += text;
  };
  const auto& parts = layout.parts;
  if (part > 0)
    note(fmt::format("{} {}", words("上接工作表"), places.sheetName(parts[part - 1].sheet)));
  if (part + 1 < parts.size())
    note(fmt::format("{} {}", words("下接工作表"), places.sheetName(parts[part + 1].sheet)));
  if (layout.hasDigits()) note(words("超过15位数字的金额以文本列示，不参与公式计算。"));
  if (layout.cut) note(words("超长的文本已截断。"));
  if (linksOf(layout, parts[part], places) > Sheet::kLinks)
    note(words("链接数超过工作表的上限，其余以文本列示。"));
  return notes;
}

void writeGroupHeads(Sheet& sheet, const TableLayout& layout) {
  const auto& columns = layout.table->columns;
  const Style style{.look = Look::head};
  if (layout.levels) sheet.write(layout.top, 0, {}, style);
  for (std::size_t first = 0; first < columns.size();) {
    std::size_t last = first;
    while (!columns[first].group.empty() && last + 1 < columns.size() &&
           columns[last + 1].group == columns[first].group)
      ++last;
    if (last > first) sheet.merge(layout.top, layout.levels + first, layout.levels + last, style);
    sheet.writeText(layout.top, layout.levels + first, columns[first].group, style);
    first = last + 1;
  }
}

Style styleOf(const TableLayout& layout, const Row& row, std::size_t column, bool& marked) {
  const Column& what = layout.table->columns[column];
  Style style{.look = row.detail ? Look::detail : Look::row,
              .wrap = layout.wrapped || wraps(layout.columns[column])};
  if (what.key && row.tone != Tone::plain) {
    style.tone = row.tone;
    style.marked = !marked && what.kind == Kind::text;
    marked = marked || style.marked;
  }
  return style;
}

/// A number as text with all its digits.
Cell asDigits(const Cell& cell) {
  if (const auto* amount = std::get_if<Decimal>(&cell)) return amount->toString();
  if (const auto* count = std::get_if<std::int64_t>(&cell)) return std::to_string(*count);
  return cell;
}

void setDetail(const Sheet& sheet, std::uint32_t at) {
  lxw_row_col_options options{};
  options.level = 1;
  sheet.check(worksheet_set_row_opt(sheet.raw(), at, LXW_DEF_ROW_HEIGHT, nullptr, &options));
}

void setPrinted(const Sheet& sheet, const TableLayout& layout) {
  lxw_worksheet* raw = sheet.raw();
  sheet.check(worksheet_repeat_rows(raw, layout.top, layout.headRow()));
  worksheet_freeze_panes(raw, layout.firstRow(), col(frozenColumns(layout)));
  if (layout.levels) worksheet_outline_settings(raw, LXW_TRUE, LXW_FALSE, LXW_TRUE, LXW_FALSE);
}

void writePart(Book& book, const TableLayout& layout, std::size_t index, const Words& words) {
  const Part& part = layout.parts[index];
  const Places& places = book.places();
  Sheet sheet(book, places.sheetName(part.sheet));
  setColumnWidths(sheet, layout);
  setPrinted(sheet, layout);
  sheet.setHeight(0, 24);
  sheet.writeText(0, 0, layout.table->title, {.look = Look::title});
  sheet.writeLink(1, 0, words("返回摘要"), {kSummarySheet, 0, 0}, {});
  sheet.writeText(2, 0, notesOf(layout, index, places, words), {.look = Look::note});
  writeHeads(sheet, layout, words);
  std::uint32_t at = layout.firstRow();
  for (std::size_t i = 0; i < part.rows; ++i)
    writeRow(sheet, layout, layout.table->rows[part.firstRow + i], at++);
  if (part.rows == 0) {
    sheet.writeText(at, 0, words("没有记录。"), {.look = Look::note});
  } else {
    addDifferenceRules(sheet, layout, part.rows);
    sheet.check(
        worksheet_autofilter(sheet.raw(), layout.headRow(), 0, at - 1, col(layout.width() - 1)));
    if (index + 1 == layout.parts.size()) writeTotals(sheet, layout, at);
  }
}

}  // namespace

void writeHeads(Sheet& sheet, const TableLayout& layout, const Words& words) {
  if (layout.grouped) writeGroupHeads(sheet, layout);
  const Style style{.look = Look::head, .wrap = true};
  if (layout.levels) sheet.writeText(layout.headRow(), 0, words("层次"), style);
  for (std::size_t i = 0; i < layout.columns.size(); ++i)
    sheet.writeText(layout.headRow(), layout.levels + i, layout.table->columns[i].name, style);
}

void writeRow(Sheet& sheet, const TableLayout& layout, const Row& row, std::uint32_t at) {
  if (row.detail) setDetail(sheet, at);
  if (layout.levels)
    sheet.write(at, 0, std::int64_t{row.detail ? 2 : 1},
                {.look = Look::detail, .align = Align::centre});
  bool marked = false;
  for (std::size_t i = 0; i < row.cells.size(); ++i)
    sheet.write(at, layout.levels + i, row.cells[i], styleOf(layout, row, i, marked));
}

void writeTotals(Sheet& sheet, const TableLayout& layout, std::uint32_t at) {
  const Table& table = *layout.table;
  if (table.totals.empty()) return;
  if (layout.levels) sheet.write(at, 0, {}, {.look = Look::total});
  for (std::size_t i = 0; i < table.totals.size(); ++i) {
    const Cell& total = table.totals[i];
    const std::size_t column = layout.levels + i;
    Style style{.look = Look::total};
    if (const auto formula = totalFormula(layout, i, sheet.book().places())) {
      const auto* amount = std::get_if<Decimal>(&total);
      style.shows = Shows::number;
      style.decimals = amount ? amount->scale() : 0;
      const double value =
          amount ? amount->toDouble() : static_cast<double>(std::get<std::int64_t>(total));
      sheet.writeFormula(at, column, *formula, value, style);
    } else if (layout.columns[i].digits && isNumeric(table.columns[i].kind)) {
      sheet.write(at, column, asDigits(total), {.look = Look::total, .align = Align::right});
    } else {
      sheet.write(at, column, total, style);
    }
  }
}

void addDifferenceRules(const Sheet& sheet, const TableLayout& layout, std::size_t rows) {
  const std::uint32_t first = layout.firstRow();
  for (std::size_t i = 0; i < layout.columns.size(); ++i) {
    if (!layout.table->columns[i].difference) continue;
    const std::size_t column = layout.levels + i;
    const std::string cell = columnName(column) + std::to_string(first + 1);
    std::string rule = fmt::format("=AND(LEN({0})>0,{0}<>0)", cell);
    lxw_conditional_format format{};
    format.type = LXW_CONDITIONAL_TYPE_FORMULA;
    format.value_string = rule.data();
    format.format = sheet.book().styles().difference();
    const auto last = first + static_cast<std::uint32_t>(rows) - 1;
    sheet.check(worksheet_conditional_format_range(sheet.raw(), first, col(column), last,
                                                   col(column), &format));
  }
}

void writeTableSheets(Book& book, const TableLayout& layout, const Words& words) {
  for (std::size_t i = 0; i < layout.parts.size(); ++i) writePart(book, layout, i, words);
}

}  // namespace velmora::report::workbook
