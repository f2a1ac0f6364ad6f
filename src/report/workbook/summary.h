#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "report/words.h"
#include "report/workbook/book.h"
#include "report/workbook/table_layout.h"

namespace velmora::report::workbook {

/// The first sheet: what the report is, its first section, an index of the others with what
/// they say beside their tables, and the lines to sign.
class Summary {
 public:
  static constexpr std::size_t kColumns = 7;

  /// Composes it without writing: everything on it with an id gets its place. `tables` are the
  /// tables that have sheets of their own.
  Summary(const Report& report, const std::deque<TableLayout>& tables, const Words& words,
          Places& places);
  void write(Book& book) const;

  /// Whether a table of the first section stands on the summary itself.
  static bool holds(const Table& table);

 private:
  /// Writes a line to the row given.
  using Line = std::function<void(Sheet&, std::uint32_t)>;
  struct Piece {
    std::size_t first, last;
    Cell cell;
    Style style = {};
  };
  struct Picture {
    const Chart* chart;
    std::uint32_t first;
  };

  std::uint32_t row() const { return static_cast<std::uint32_t>(lines_.size()); }
  Place here() const { return {0, row(), 0}; }
  void add(std::vector<Piece> pieces, double leastHeight = 0);
  void addText(const std::string& text, Style style);
  void addBlank() { add({}); }
  void addHeading(const std::string& text);
  void addCover();
  void addSummaryOf(const Section& section);
  void addBlocks(const Section& section);
  void addIndex();
  void addIndexOf(const Section& section);
  void addSheets(const TableLayout& layout);
  void widen(std::size_t column, std::size_t width);
  void placeSection(const Section& section);
  void addSignatures();
  void block(const Paragraph& paragraph);
  void block(const Facts& facts);
  void block(const Steps& steps);
  void block(const Table& table);
  void block(const Chart& chart);
  void block(const Signatures&) {}  // at the end, for the whole report

  double heightOf(const std::vector<Piece>& pieces) const;
  static void writePiece(Sheet& sheet, std::uint32_t row, const Piece& piece);
  const TableLayout* sheetsOf(const Table& table) const;
  std::string toneWord(Tone tone) const;

  const Report& report_;
  const std::deque<TableLayout>& tables_;
  const Words& words_;
  Places& places_;
  std::vector<Line> lines_;
  std::deque<TableLayout> own_;
  std::vector<Picture> pictures_;
  std::array<std::size_t, kColumns> widths_{26, 17, 17, 17, 17, 17, 17};
};

}  // namespace velmora::report::workbook
