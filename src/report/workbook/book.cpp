#include "report/workbook/book.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <stdexcept>
#include <utility>

#include "report/workbook/complete_file.h"
#include "report/workbook/texts.h"

namespace velmora::report::workbook {

namespace {

constexpr std::size_t kLongestPageText = 100;

lxw_col_t col(std::size_t column) {
  return static_cast<lxw_col_t>(column);
}

/// A text within a page's head or foot, where "&" begins a code.
std::string pageText(const std::string& text) {
  std::string result;
  for (const char c : cellText(firstUnits(text, kLongestPageText))) {
    if (c == '&') result += c;
    result += c == '\n' || c == '\r' ? ' ' : c;
  }
  return result;
}

std::string joined(const References& references) {
  std::string text;
  for (const Reference& reference : references) {
    if (!text.empty()) text += ", ";
    text += reference.text;
  }
  return text;
}

/// What is said when the library cannot make a file; it knows only that it could not.
std::string systemReason() {
  return errno ? std::strerror(errno) : "for a reason that the system does not tell";
}

lxw_workbook* openedBook(const std::string& file) {
  errno = 0;
  std::FILE* out = std::fopen(file.c_str(), "wb");
  if (!out) throw std::runtime_error(fmt::format("cannot write {}: {}", file, systemReason()));
  std::fclose(out);
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  lxw_workbook* book = workbook_new_opt(file.c_str(), &options);
  if (!book) throw std::bad_alloc();
  return book;
}

}  // namespace

std::size_t Places::addSheet(std::string name) {
  sheets_.push_back(std::move(name));
  return sheets_.size() - 1;
}

void Places::add(const std::string& id, Place place) {
  if (!id.empty()) places_.emplace(id, place);
}

const Place* Places::find(const std::string& id) const {
  const auto found = places_.find(id);
  return found == places_.end() ? nullptr : &found->second;
}

const Place* Places::of(const References& references) const {
  for (const Reference& reference : references)
    if (const Place* place = find(reference.target)) return place;
  return nullptr;
}

Sheet::Sheet(Book& book, const std::string& name) : book_(book), name_(name) {
  errno = 0;
  sheet_ = workbook_add_worksheet(book.raw(), name.c_str());
  if (!sheet_)
    book.fail(fmt::format("no temporary file for its sheet {}: {}", name, systemReason()));
  worksheet_set_landscape(sheet_);
  worksheet_set_paper(sheet_, 9);  // A4
  worksheet_fit_to_pages(sheet_, 1, 0);
  worksheet_set_margins(sheet_, 0.5, 0.5, 0.75, 0.75);
  const Report& report = book.report();
  check(worksheet_set_header(
      sheet_, fmt::format("&L{}&R{}", pageText(report.subject), pageText(name)).c_str()));
  check(worksheet_set_footer(
      sheet_,
      fmt::format("&L{}&C&P / &N&R{}", pageText(report.title), pageText(report.madeAt)).c_str()));
}

void Sheet::check(lxw_error code) const {
  if (code != LXW_NO_ERROR) book_.fail(fmt::format("sheet {}: {}", name_, lxw_strerror(code)));
}

void Sheet::write(std::uint32_t row, std::size_t column, const Cell& cell, Style style) {
  if (const auto* text = std::get_if<std::string>(&cell)) {
    writeText(row, column, *text, style);
  } else if (const auto* count = std::get_if<std::int64_t>(&cell)) {
    writeAmount(row, column, Decimal(*count), style);
  } else if (const auto* amount = std::get_if<Decimal>(&cell)) {
    writeAmount(row, column, *amount, style);
  } else if (const auto* date = std::get_if<Date>(&cell)) {
    writeDate(row, column, *date, style);
  } else if (const auto* references = std::get_if<References>(&cell)) {
    if (const Place* place = book_.places().of(*references)) {
      writeLink(row, column, joined(*references), *place, style);
    } else {
      writeText(row, column, joined(*references), style);
    }
  } else if (style != Style{}) {
    check(worksheet_write_blank(sheet_, row, col(column), book_.styles().of(style)));
  }
}

void Sheet::writeText(std::uint32_t row, std::size_t column, const std::string& text,
                      const Style& style) {
  check(worksheet_write_string(sheet_, row, col(column), cellText(text).c_str(),
                               book_.styles().of(style)));
}

void Sheet::writeLink(std::uint32_t row, std::size_t column, const std::string& text,
                      const Place& to, Style style) {
  if (text.empty() || ++links_ > kLinks) return writeText(row, column, text, style);
  style.link = true;
  const std::string target =
      "internal:" + cellName(book_.places().sheetName(to.sheet), to.row, to.column);
  check(worksheet_write_url_opt(sheet_, row, col(column), target.c_str(), book_.styles().of(style),
                                cellText(text).c_str(), nullptr));
}

void Sheet::writeNumber(std::uint32_t row, std::size_t column, double value, const Style& style) {
  check(worksheet_write_number(sheet_, row, col(column), value, book_.styles().of(style)));
}

void Sheet::writeAmount(std::uint32_t row, std::size_t column, const Decimal& amount, Style style) {
  if (!isExact(amount)) {
    if (style.align == Align::natural) style.align = Align::right;
    return writeText(row, column, amount.toString(), style);
  }
  style.shows = Shows::number;
  style.decimals = amount.scale();
  writeNumber(row, column, amount.toDouble(), style);
}

void Sheet::writeDate(std::uint32_t row, std::size_t column, const Date& date, Style style) {
  const Date::Parts day = date.parts();
  if (day.year < 1900 || day.year > 9999)  // a workbook's days begin there
    return writeText(row, column, date.toDateText(), style);
  style.shows = Shows::date;
  lxw_datetime value{};
  value.year = day.year;
  value.month = day.month;
  value.day = day.day;
  check(worksheet_write_datetime(sheet_, row, col(column), &value, book_.styles().of(style)));
}

void Sheet::writeFormula(std::uint32_t row, std::size_t column, const std::string& formula,
                         double value, const Style& style) {
  check(worksheet_write_formula_num(sheet_, row, col(column), ("=" + formula).c_str(),
                                    book_.styles().of(style), value));
}

void Sheet::merge(std::uint32_t row, std::size_t first, std::size_t last, const Style& style) {
  check(
      worksheet_merge_range(sheet_, row, col(first), row, col(last), "", book_.styles().of(style)));
}

void Sheet::setHeight(std::uint32_t row, double height) {
  check(worksheet_set_row(sheet_, row, height, nullptr));
}

void Sheet::setWidth(std::size_t column, std::size_t width) {
  check(
      worksheet_set_column(sheet_, col(column), col(column), static_cast<double>(width), nullptr));
}

Book::Book(const std::string& file, const Report& report, const Places& places)
    : file_(file),
      report_(report),
      places_(places),
      book_(openedBook(file)),
      styles_(book_, report.language) {
  setProperties();
}

Book::~Book() {
  lxw_workbook_free(book_);
}

void Book::fail(const std::string& why) const {
  throw std::runtime_error(fmt::format("cannot write {}: {}", file_, why));
}

void Book::setProperties() {
  constexpr std::size_t kLongest = 255;
  const auto property = [](const std::string& text) {
    return cellText(firstUnits(text, kLongest));
  };
  std::string title = property(report_.title), subject = property(report_.subject),
              author = property(report_.author);
  lxw_doc_properties properties{};
  properties.title = title.data();
  properties.subject = subject.data();
  properties.author = author.data();
  properties.created = std::max<std::int64_t>(report_.madeAtSeconds, 1);  // 0 would be now
  if (const lxw_error code = workbook_set_properties(book_, &properties)) fail(lxw_strerror(code));
}

/// The library does not look whether the rows, which wait in temporary files, got there.
void Book::checkRows() const {
  for (lxw_worksheet* sheet = book_->worksheets->stqh_first; sheet;
       sheet = sheet->list_pointers.stqe_next) {
    lxw_worksheet_write_single_row(sheet);
    errno = 0;
    if (std::fflush(sheet->optimize_tmpfile) != 0 || std::ferror(sheet->optimize_tmpfile) != 0)
      fail("the rows wait in the folder of temporary files: " + systemReason());
  }
}

void Book::close() {
  checkRows();
  errno = 0;
  lxw_workbook* book = std::exchange(book_, nullptr);
  if (const lxw_error code = workbook_close(book)) {
    const std::string reason = systemReason();
    fail(fmt::format("{} ({})", lxw_strerror(code), reason));
  }
  if (const std::string damage = damageOf(file_); !damage.empty()) fail(damage);
}

}  // namespace velmora::report::workbook
