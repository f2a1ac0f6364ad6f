#include "report/workbook/summary.h"

#include <algorithm>
#include <fmt/format.h>

#include "report/display_width.h"
#include "report/workbook/picture.h"
#include "report/workbook/table_sheets.h"

namespace velmora::report::workbook {

namespace {

constexpr std::size_t kLast = Summary::kColumns - 1;
constexpr double kLineHeight = 15, kHighestRow = 409;

/// Lines that a text takes in cells of that width.
std::size_t linesOf(const std::string& text, std::size_t width) {
  std::size_t lines = 0;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines += std::max<std::size_t>(
        1, (displayWidth(std::string_view(text).substr(at, end - at)) + width - 1) / width);
    at = end + 1;
  }
  return lines;
}

/// The text that decides how high a cell is.
std::string textOf(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  std::string all;
  if (const auto* references = std::get_if<References>(&cell))
    for (const Reference& reference : *references) all += reference.text + ", ";
  return all;
}

bool hasOwnBlocks(const Section& section) {
  return std::any_of(section.blocks.begin(), section.blocks.end(), [](const Block& block) {
    return !std::holds_alternative<Table>(block) && !std::holds_alternative<Signatures>(block);
  });
}

/// Whether the text of a bar says more than its amount.
bool saysMore(const Bar& bar) {
  std::string digits = bar.text;
  std::erase(digits, ',');
  return digits != bar.amount.toString();
}

}  // namespace

Summary::Summary(const Report& report, const std::deque<TableLayout>& tables, const Words& words,
                 Places& places)
    : report_(report), tables_(tables), words_(words), places_(places) {
  addCover();
  if (!report.sections.empty()) {
    placeSection(report.sections.front());
    addSummaryOf(report.sections.front());
    addBlocks(report.sections.front());
  }
  addIndex();
  for (std::size_t i = 1; i < report.sections.size(); ++i) {
    const Section& section = report.sections[i];
    placeSection(section);
    if (!hasOwnBlocks(section)) continue;
    addSummaryOf(section);
    addBlocks(section);
  }
  addSignatures();
}

bool Summary::holds(const Table& table) {
  constexpr std::size_t kMostRows = 40;
  const bool detailed = std::any_of(table.rows.begin(), table.rows.end(),
                                    [](const Row& each) { return each.detail; });
  return table.rows.size() <= kMostRows && table.columns.size() + (detailed ? 1 : 0) <= kColumns;
}

const TableLayout* Summary::sheetsOf(const Table& table) const {
  const auto found = std::find_if(tables_.begin(), tables_.end(), [&](const TableLayout& layout) {
    return layout.table == &table;
  });
  return found == tables_.end() ? nullptr : &*found;
}

std::string Summary::toneWord(Tone tone) const {
  switch (tone) {
    case Tone::serious:
      return words_("严重错误");
    case Tone::warning:
      return words_("警告信息");
    case Tone::good:
      return words_("没有问题");
    case Tone::plain:
      break;
  }
  return {};
}

double Summary::heightOf(const std::vector<Piece>& pieces) const {
  std::size_t lines = 1;
  for (const Piece& piece : pieces) {
    std::size_t width = 0;
    for (std::size_t i = piece.first; i <= piece.last; ++i) width += widths_[i];
    lines = std::max(lines, linesOf(textOf(piece.cell), width - 2));
  }
  return std::min(kHighestRow, static_cast<double>(lines) * kLineHeight);
}

void Summary::writePiece(Sheet& sheet, std::uint32_t row, const Piece& piece) {
  if (piece.last > piece.first) sheet.merge(row, piece.first, piece.last, piece.style);
  sheet.write(row, piece.first, piece.cell, piece.style);
}

void Summary::add(std::vector<Piece> pieces, double leastHeight) {
  lines_.emplace_back(
      [this, leastHeight, pieces = std::move(pieces)](Sheet& sheet, std::uint32_t row) {
        const double height = std::max(leastHeight, heightOf(pieces));
        if (height > kLineHeight) sheet.setHeight(row, height);
        for (const Piece& piece : pieces) writePiece(sheet, row, piece);
      });
}

void Summary::widen(std::size_t column, std::size_t width) {
  constexpr std::size_t kWidest = 40;
  widths_[column] = std::max(widths_[column], std::min(width + 2, kWidest));
}

void Summary::addText(const std::string& text, Style style) {
  style.wrap = true;
  style.marked = true;
  add({{0, kLast, text, style}});
}

void Summary::addHeading(const std::string& text) {
  addBlank();
  add({{0, kLast, text, {.look = Look::heading}}}, 22);
}

void Summary::addCover() {
  add({{0, kLast, report_.title, {.look = Look::title}}}, 28);
  add({{0, kLast, report_.subject, {.look = Look::label}}});
  block(Facts{{{words_("制表人"), report_.author}, {words_("制表时间"), report_.madeAt}}});
}

void Summary::addSummaryOf(const Section& section) {
  addHeading(section.title);
  if (!section.summary.empty()) addText(section.summary, {.tone = section.tone});
}

void Summary::addBlocks(const Section& section) {
  for (const Block& each : section.blocks)
    std::visit([this](const auto& kind) { block(kind); }, each);
}

/// Leads to what the section says here, else to its first table, else to its line in the index.
void Summary::placeSection(const Section& section) {
  if (&section == &report_.sections.front() || hasOwnBlocks(section))
    return places_.add(section.id, {0, row() + 1});
}

void Summary::addIndex() {
  if (report_.sections.size() < 2) return;
  addHeading(words_("目录"));
  const Style head{.look = Look::head};
  add({{0, 0, words_("主题"), head},
       {1, 1, words_("结论"), head},
       {2, kLast - 1, words_("说明"), head},
       {kLast, kLast, words_("行数"), head}});
  for (std::size_t i = 1; i < report_.sections.size(); ++i) addIndexOf(report_.sections[i]);
}

void Summary::addIndexOf(const Section& section) {
  const Style wrapped{.wrap = true};
  Style toned = wrapped;
  toned.tone = section.tone;
  toned.marked = true;
  if (!hasOwnBlocks(section)) {
    const auto table =
        std::find_if(section.blocks.begin(), section.blocks.end(),
                     [](const Block& b) { return std::holds_alternative<Table>(b); });
    places_.add(section.id, table == section.blocks.end()
                                ? here()
                                : Place{sheetsOf(std::get<Table>(*table))->parts.front().sheet});
  }
  add({{0, 0, References{{section.title, section.id}}, wrapped},
       {1, 1, toneWord(section.tone), toned},
       {2, kLast - 1, section.summary, wrapped}});
  for (const Block& each : section.blocks)
    if (const auto* table = std::get_if<Table>(&each)) addSheets(*sheetsOf(*table));
}

void Summary::addSheets(const TableLayout& layout) {
  for (const Part& part : layout.parts) {
    const char* label = part.firstRow == 0 ? "工作表" : "续表";
    lines_.emplace_back([this, part, label](Sheet& sheet, std::uint32_t at) {
      sheet.writeText(at, 1, words_(label), {.look = Look::label, .align = Align::right});
      sheet.merge(at, 2, kLast - 1, {});
      sheet.writeLink(at, 2, places_.sheetName(part.sheet), {part.sheet}, {});
      sheet.write(at, kLast, static_cast<std::int64_t>(part.rows), {});
    });
  }
}

void Summary::addSignatures() {
  const Style head{.look = Look::label}, line{.look = Look::line};
  for (const Section& section : report_.sections) {
    for (const Block& each : section.blocks) {
      const auto* signatures = std::get_if<Signatures>(&each);
      if (!signatures) continue;
      addHeading(words_("签署"));
      add({{1, 2, words_("姓名"), head},
           {3, 4, words_("签字"), head},
           {5, kLast, words_("日期"), head}});
      for (const std::string& role : signatures->roles)
        add({{0, 0, role, line}, {1, 2, {}, line}, {3, 4, {}, line}, {5, kLast, {}, line}}, 32);
    }
  }
}

void Summary::block(const Paragraph& paragraph) {
  addText(paragraph.text, {.tone = paragraph.tone});
}

void Summary::block(const Facts& facts) {
  for (const auto& [name, value] : facts.entries) {
    const bool isText = std::holds_alternative<std::string>(value);
    if (!isText && !std::holds_alternative<References>(value)) {
      widen(1, widthOf(value));
      add({{0, 0, name, {.look = Look::label, .wrap = true}},
           {1, 1, value, {.align = Align::left}}});
    } else {
      add({{0, 0, name, {.look = Look::label, .wrap = true}}, {1, kLast, value, {.wrap = true}}});
    }
  }
}

void Summary::block(const Steps& steps) {
  addText(steps.title, {.look = Look::strong});
  std::size_t number = 0;
  for (const Reference& step : steps.entries)
    add({{0,
          kLast,
          References{{fmt::format("{}. {}", ++number, step.text), step.target}},
          {.wrap = true}}});
}

void Summary::block(const Table& table) {
  // A table with sheets of its own is in the index; those of the first section are not.
  if (const TableLayout* sheets = sheetsOf(table)) {
    if (sheets->inFirstSection) addSheets(*sheets);
    return;
  }
  addBlank();
  places_.add(table.id, here());
  addText(table.title, {.look = Look::strong});
  own_.push_back(surveyed(table));
  TableLayout& layout = own_.back();
  placeAt(layout, 0, row(), places_);
  for (std::size_t i = 0; i < layout.columns.size(); ++i)
    widen(layout.levels + i, layout.columns[i].width);
  if (layout.grouped) addBlank();  // written with the heads
  lines_.emplace_back(
      [&layout, this](Sheet& sheet, std::uint32_t) { writeHeads(sheet, layout, words_); });
  for (const Row& each : table.rows)
    lines_.emplace_back([&, this](Sheet& sheet, std::uint32_t at) {
      std::vector<Piece> pieces;
      for (std::size_t i = 0; i < each.cells.size(); ++i)
        pieces.push_back({layout.levels + i, layout.levels + i, each.cells[i]});
      if (const double height = heightOf(pieces); height > kLineHeight) sheet.setHeight(at, height);
      writeRow(sheet, layout, each, at);
    });
  if (!table.rows.empty())
    lines_.emplace_back([&](Sheet& sheet, std::uint32_t at) {
      addDifferenceRules(sheet, layout, layout.table->rows.size());
      writeTotals(sheet, layout, at);
    });
}

void Summary::block(const Chart& chart) {
  addBlank();
  places_.add(chart.id, here());
  addText(chart.title, {.look = Look::strong});
  const std::uint32_t first = row();
  for (const Bar& bar : chart.bars) {
    widen(0, displayWidth(bar.label));
    widen(1, widthOf(bar.amount));
  }
  for (const Bar& bar : chart.bars)
    add({{0, 0, References{{bar.label, bar.target}}, {.tone = bar.tone, .marked = true}},
         {1, 1, bar.amount},
         {2, 2, saysMore(bar) ? Cell(bar.text) : Cell(), {.wrap = true}}});
  if (!isDrawn(chart)) return;
  pictures_.push_back({&chart, first});
  while (row() < first + kPictureRows) addBlank();
}

void Summary::write(Book& book) const {
  Sheet sheet(book, places_.sheetName(0));
  worksheet_gridlines(sheet.raw(), LXW_HIDE_ALL_GRIDLINES);
  for (std::size_t i = 0; i < kColumns; ++i) sheet.setWidth(i, widths_[i]);
  for (std::uint32_t i = 0; i < lines_.size(); ++i) lines_[i](sheet, i);
  for (const Picture& picture : pictures_) draw(sheet, *picture.chart, picture.first, 3);
}

}  // namespace velmora::report::workbook
