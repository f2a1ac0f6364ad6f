#include <algorithm>
#include <ostream>
#include <vector>

#include "cli/output/result_writer.h"
#include "report/display_width.h"

namespace velmora::cli {

namespace {

using collections::Variant;

constexpr std::size_t kGap = 2;

bool isNumber(ado::DataTypeEnum type) {
  switch (type) {
    case ado::adSmallInt:
    case ado::adInteger:
    case ado::adSingle:
    case ado::adDouble:
    case ado::adCurrency:
    case ado::adDecimal:
    case ado::adUnsignedTinyInt:
    case ado::adBigInt:
    case ado::adNumeric:
      return true;
    default:
      return false;
  }
}

std::string tableText(const Variant& value) {
  return value.isNull() ? "NULL" : report::singleLine(cellText(value));
}

std::vector<std::size_t> columnWidths(ado::Recordset& rows) {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < rows.fieldCount(); ++i)
    widths.push_back(report::displayWidth(report::singleLine(rows.definition(i).name)));
  if (!rows.BOF()) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext())
    for (std::size_t i = 0; i < widths.size(); ++i)
      widths[i] = std::max(widths[i], report::displayWidth(tableText(rows.GetValue(i))));
  return widths;
}

/// One line; the blanks that would end it are left out.
class Line {
 public:
  void add(const std::string& text, std::size_t width, bool toTheRight) {
    const std::size_t padding = width - std::min(width, report::displayWidth(text));
    if (!first_) blanks_ += kGap;
    first_ = false;
    if (toTheRight) blanks_ += padding;
    if (!text.empty()) {
      line_.append(blanks_, ' ').append(text);
      blanks_ = 0;
    }
    if (!toTheRight) blanks_ += padding;
  }
  const std::string& text() const { return line_; }

 private:
  std::string line_;
  std::size_t blanks_ = 0;
  bool first_ = true;
};

}  // namespace

void writeTable(std::ostream& out, ado::Recordset& rows, const Style& style) {
  const auto widths = columnWidths(rows);
  Line names, rule;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const auto& field = rows.definition(i);
    names.add(report::singleLine(field.name), widths[i], isNumber(field.type));
    rule.add(std::string(widths[i], '-'), widths[i], false);
  }
  out << style.heading(names.text()) << '\n' << rule.text() << '\n';
  if (!rows.BOF()) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext()) {
    Line line;
    for (std::size_t i = 0; i < widths.size(); ++i)
      line.add(tableText(rows.GetValue(i)), widths[i], isNumber(rows.definition(i).type));
    out << line.text() << '\n';
  }
}

}  // namespace velmora::cli
