#include "report/html/table.h"

#include <algorithm>
#include <array>

namespace velmora::report::html {

namespace {

std::string_view nameOf(Kind kind) {
  switch (kind) {
    case Kind::count:
      return "count";
    case Kind::amount:
      return "amount";
    case Kind::date:
      return "date";
    default:
      return "text";
  }
}

/// How a column's cells begin.
struct Tags {
  std::string cell;
  std::string different;  ///< an amount that ought to be 0 and is not
  std::string repeated;   ///< says in a detail what its main row says
};

std::string tag(std::string_view classes) {
  if (classes.empty()) return "<td>";
  const bool several = classes.find(' ') != std::string_view::npos;
  return std::string("<td class=") + (several ? "\"" : "") + std::string(classes) +
         (several ? "\">" : ">");
}

Tags tagsOf(const Column& column) {
  switch (column.kind) {
    case Kind::text:
      return {tag(""), tag(""), tag("k")};
    case Kind::date:
      return {tag("t"), tag("t"), tag("t k")};
    default:
      return {tag("n"), tag("n x"), tag("n k")};
  }
}

bool isDifferent(const Column& column, const Cell& cell) {
  const auto* amount = std::get_if<Decimal>(&cell);
  return column.difference && amount != nullptr && !amount->isZero();
}

/// Whether a column holds sentences, which need room to be read.
bool isProse(const Table& table, std::size_t index) {
  constexpr std::size_t kSentence = 60;
  return std::any_of(table.rows.begin(), table.rows.end(), [&](const Row& row) {
    const auto* text = std::get_if<std::string>(&row.cells[index]);
    return text != nullptr && text->size() > kSentence;
  });
}

void writeHead(const Page& page, const Table& table, std::size_t index, bool spansTwo) {
  const Column& column = table.columns[index];
  page.markup.raw("<th scope=col data-column=")
      .raw(std::to_string(index))
      .raw(" data-kind=")
      .raw(nameOf(column.kind));
  if (column.choice) page.markup.raw(" data-choice");
  if (column.kind == Kind::amount || column.kind == Kind::count) page.markup.raw(" class=n");
  if (column.kind == Kind::text && isProse(table, index)) page.markup.raw(" class=p");
  if (spansTwo) page.markup.raw(" rowspan=2");
  page.markup.raw(">").text(column.name);
}

void writeHeads(const Page& page, const Table& table) {
  const auto& columns = table.columns;
  const bool grouped = std::any_of(columns.begin(), columns.end(),
                                   [](const Column& column) { return !column.group.empty(); });
  page.markup.raw("<thead><tr>");
  for (std::size_t i = 0; i < columns.size();) {
    std::size_t end = i + 1;
    if (columns[i].group.empty()) {
      writeHead(page, table, i, grouped);
    } else {
      while (end < columns.size() && columns[end].group == columns[i].group) ++end;
      page.markup.raw("<th scope=colgroup colspan=")
          .raw(std::to_string(end - i))
          .raw(">")
          .text(columns[i].group);
    }
    i = end;
  }
  if (grouped) page.markup.raw("<tr>");
  for (std::size_t i = 0; grouped && i < columns.size(); ++i)
    if (!columns[i].group.empty()) writeHead(page, table, i, false);
}

void beginRow(const Page& page, const Row& row) {
  page.markup.raw("<tr");
  if (!row.id.empty()) page.markup.raw(" id=").id(row.id);
  const std::string_view tone = classOf(row.tone);
  if (row.detail && !tone.empty())
    page.markup.raw(" class=\"d ").raw(tone).raw("\"");
  else if (row.detail || !tone.empty())
    page.markup.raw(" class=").raw(row.detail ? "d" : tone);
  page.markup.raw(">");
}

/// The rows of a table, with what they have in common.
class RowWriter {
 public:
  RowWriter(const Page& page, const Table& table) : page_(page), table_(table) {
    for (const Column& column : table.columns) tags_.push_back(tagsOf(column));
    for (const Tone tone : {Tone::good, Tone::warning, Tone::serious})
      tones_.at(static_cast<std::size_t>(tone)) = page.words(wordOf(tone));
  }

  void write(const Row& row) const {
    beginRow(page_, row);
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      page_.markup.raw(tagOf(row, i));
      if (i == 0) writeTone(row);
      writeCell(page_, row.cells[i]);
    }
  }

 private:
  const std::string& tagOf(const Row& row, std::size_t i) const {
    if (row.detail && table_.columns[i].key) return tags_[i].repeated;
    return isDifferent(table_.columns[i], row.cells[i]) ? tags_[i].different : tags_[i].cell;
  }

  /// The word for a row's sign, which the styles draw, unless one of its cells says it.
  void writeTone(const Row& row) const {
    const std::string& word = tones_.at(static_cast<std::size_t>(row.tone));
    const auto says = [&](const Cell& cell) {
      const auto* text = std::get_if<std::string>(&cell);
      return text != nullptr && *text == word;
    };
    if (!word.empty() && std::none_of(row.cells.begin(), row.cells.end(), says))
      page_.markup.raw("<u>").text(word).raw(" </u>");
  }

  const Page& page_;
  const Table& table_;
  std::vector<Tags> tags_;
  std::array<std::string, 4> tones_;  ///< words by tone; a plain one has none
};

void writeRows(const Page& page, const Table& table) {
  const RowWriter writer(page, table);
  page.markup.raw("<tbody>");
  for (const Row& row : table.rows) writer.write(row);
  if (table.totals.empty()) return;
  page.markup.raw("<tfoot>");
  writer.write({.cells = table.totals});
}

/// The table in a box of its own that scrolls, by keyboard too.
void writeBox(const Page& page, const Table& table) {
  page.markup.raw("<div class=box role=region tabindex=0 aria-labelledby=").id(table.id);
  page.markup.raw("-title><table id=").id(table.id).raw(" aria-labelledby=").id(table.id);
  page.markup.raw("-title>");
  writeHeads(page, table);
  writeRows(page, table);
  page.markup.raw("</table></div>");
}

void writeTitle(const Page& page, const Table& table) {
  page.markup.raw("<h3 id=").id(table.id).raw("-title>").text(table.title).raw("</h3>");
}

void writeLarge(const Page& page, const Table& table) {
  page.markup.raw("<p class=waiting>");
  page.word("此表由页面脚本显示。");
  page.markup.raw("</p><noscript>");
  writeBox(page, table);
  page.markup.raw("</noscript>");
}

}  // namespace

void write(const Page& page, const Table& table) {
  page.markup.raw(table.folded ? "<details class=table><summary>" : "<div class=table>");
  writeTitle(page, table);
  if (table.folded) page.markup.raw("</summary>");
  if (table.rows.size() > kLargeTable)
    writeLarge(page, table);
  else if (table.rows.empty())
    page.markup.raw("<p>").text(page.words("没有记录")).raw("</p>");
  else
    writeBox(page, table);
  page.markup.raw(table.folded ? "</details>\n" : "</div>\n");
}

}  // namespace velmora::report::html
