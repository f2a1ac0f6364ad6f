#pragma once

#include <map>
#include <string>
#include <xlsxwriter.h>

#include "report/model.h"

namespace velmora::report::workbook {

enum class Look { body, note, title, heading, strong, head, row, detail, total, label, line };
enum class Align { natural, left, centre, right };
enum class Shows { text, number, date };

/// How a cell looks.
struct Style {
  Look look = Look::body;
  Tone tone = Tone::plain;
  Shows shows = Shows::text;
  int decimals = 0;  ///< of a number
  Align align = Align::natural;
  bool marked = false;  ///< the tone is told by a sign before the text too
  bool wrap = false, link = false;
  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in <=>
  auto operator<=>(const Style&) const = default;
};

/// The formats of a workbook, each made when it is first asked for.
class Styles {
 public:
  Styles(lxw_workbook* book, const std::string& language) : book_(book), language_(language) {}
  lxw_format* of(const Style& style);
  /// What a rule gives an amount that ought to be 0 and is not.
  lxw_format* difference();

 private:
  lxw_format* add();
  lxw_format* make(const Style& style);
  void setLook(lxw_format* format, const Style& style) const;

  lxw_workbook* book_;
  std::string language_;
  std::map<Style, lxw_format*> formats_;
  lxw_format* difference_ = nullptr;
};

}  // namespace velmora::report::workbook
