#include "cli/tables/csv_reader.h"

#include <fmt/format.h>

#include "cli/failure.h"

namespace velmora::cli {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {
    if (text_.starts_with("\xEF\xBB\xBF")) text_.remove_prefix(3);
  }

  std::vector<CsvRow> read() {
    std::vector<CsvRow> rows;
    while (position_ < text_.size()) {
      if (takeLineEnd()) continue;
      rows.push_back(readRow());
      const auto wanted = rows.front().cells.size(), found = rows.back().cells.size();
      if (found != wanted)
        fail(rows.back().line, fmt::format("{} cells; the header has {}", found, wanted));
    }
    return rows;
  }

 private:
  [[noreturn]] static void fail(std::size_t line, const std::string& what) {
    throw Failure(fmt::format("line {}: {}", line, what));
  }

  CsvRow readRow() {
    CsvRow row{line_, {}};
    do {
      row.cells.push_back(text_.substr(position_).starts_with('"') ? readQuoted() : readPlain());
    } while (take(','));
    if (position_ < text_.size() && !takeLineEnd())
      fail(line_, "expected a comma or the end of the line after a quoted cell");
    return row;
  }

  CsvCell readPlain() {
    const auto end = std::min(text_.find_first_of(",\r\n", position_), text_.size());
    CsvCell cell{std::string(text_.substr(position_, end - position_)), false};
    if (cell.text.find('"') != std::string::npos)
      fail(line_, "a quote inside a cell; quote the whole cell and double the quotes in it");
    position_ = end;
    return cell;
  }

  CsvCell readQuoted() {
    const std::size_t begin = line_;
    CsvCell cell{{}, true};
    ++position_;
    while (position_ < text_.size()) {
      const char c = text_[position_++];
      if (c == '"' && !take('"')) return cell;
      if (c == '\n') ++line_;
      cell.text += c;
    }
    fail(begin, "a quoted cell has no end");
  }

  bool take(char c) {
    if (position_ >= text_.size() || text_[position_] != c) return false;
    ++position_;
    return true;
  }

  bool takeLineEnd() {
    const std::size_t before = position_;
    take('\r');
    if (take('\n')) {
      ++line_;
      return true;
    }
    if (position_ == text_.size() && position_ > before) return true;
    position_ = before;
    return false;
  }

  std::string_view text_;
  std::size_t position_ = 0, line_ = 1;
};

}  // namespace

std::vector<CsvRow> parseCsv(std::string_view text) {
  return Reader(text).read();
}

}  // namespace velmora::cli
