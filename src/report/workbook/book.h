#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>
#include <xlsxwriter.h>

#include "report/model.h"
#include "report/workbook/styles.h"

namespace velmora::report::workbook {

/// A cell of the workbook.
struct Place {
  std::size_t sheet = 0;
  std::uint32_t row = 0;
  std::size_t column = 0;
};

/// Where everything with an id stands; known before the first cell is written, because cells
/// lead to later ones.
class Places {
 public:
  /// The next sheet's number.
  std::size_t addSheet(std::string name);
  const std::string& sheetName(std::size_t sheet) const { return sheets_[sheet]; }
  /// The first place of an id holds; without an id nothing is kept.
  void add(const std::string& id, Place place);
  /// Null when nothing has the id.
  const Place* find(const std::string& id) const;
  /// Where the first of `references` leads that leads anywhere; else null.
  const Place* of(const References& references) const;

 private:
  std::vector<std::string> sheets_;
  std::unordered_map<std::string, Place> places_;
};

class Book;

/// A sheet, written row by row from the top: a row that is left is on disk.
class Sheet {
 public:
  /// Links that a reader takes on one sheet.
  static constexpr std::size_t kLinks = 65'530;

  Sheet(Book& book, const std::string& name);

  /// A cell of the model in its type; texts that lead nowhere known are texts.
  void write(std::uint32_t row, std::size_t column, const Cell& cell, Style style);
  void writeText(std::uint32_t row, std::size_t column, const std::string& text,
                 const Style& style);
  void writeLink(std::uint32_t row, std::size_t column, const std::string& text, const Place& to,
                 Style style);
  /// A formula (without its "=") and what it comes to.
  void writeFormula(std::uint32_t row, std::size_t column, const std::string& formula, double value,
                    const Style& style);
  /// One cell out of several of a row, written afterwards by one of the above.
  void merge(std::uint32_t row, std::size_t first, std::size_t last, const Style& style);
  void setHeight(std::uint32_t row, double height);
  void setWidth(std::size_t column, std::size_t width);

  lxw_worksheet* raw() const { return sheet_; }
  Book& book() const { return book_; }
  void check(lxw_error code) const;

 private:
  void writeNumber(std::uint32_t row, std::size_t column, double value, const Style& style);
  void writeAmount(std::uint32_t row, std::size_t column, const Decimal& amount, Style style);
  void writeDate(std::uint32_t row, std::size_t column, const Date& date, Style style);

  Book& book_;
  std::string name_;
  lxw_worksheet* sheet_;
  std::size_t links_ = 0;
};

/// A workbook in the making, with A4 pages laid out for the report.
class Book {
 public:
  /// Raises std::runtime_error when the file cannot be written.
  Book(const std::string& file, const Report& report, const Places& places);
  ~Book();
  Book(const Book&) = delete;
  Book& operator=(const Book&) = delete;

  /// Puts the file together. Raises std::runtime_error, also when the disk or the folder of
  /// temporary files is full.
  void close();

  [[noreturn]] void fail(const std::string& why) const;
  lxw_workbook* raw() const { return book_; }
  Styles& styles() { return styles_; }
  const Places& places() const { return places_; }
  const Report& report() const { return report_; }

 private:
  void setProperties();
  void checkRows() const;

  std::string file_;
  const Report& report_;
  const Places& places_;
  lxw_workbook* book_;
  Styles styles_;
};

}  // namespace velmora::report::workbook
