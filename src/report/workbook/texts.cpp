#include "report/workbook/texts.h"

#include <algorithm>
#include <fmt/format.h>

#include "platform/tsql/syntax/unicode.h"
#include "velmora/collections/letter_case.h"

namespace velmora::report::workbook {

namespace {

constexpr std::size_t kLongestText = 32'767, kLongestName = 31;
constexpr std::int64_t kExactBelow = 1'000'000'000'000'000;
constexpr std::string_view kReplacement = "\uFFFD", kEllipsis = "…", kEscapedUnderscore = "_x005F_";

bool isAllowed(tsql::CodePoint c) {
  if (c.value < 0x20) return c.value == '\t' || c.value == '\n' || c.value == '\r';
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};  // by bytes; less is overlong
  return c.value >= kSmallest[c.size] && (c.value < 0xD800 || c.value > 0xDFFF) &&
         c.value != 0xFFFE && c.value != 0xFFFF && c.value <= 0x10FFFF;
}

std::size_t unitsOf(tsql::CodePoint c) {
  return c.size == 4 ? 2 : 1;
}

/// Whether a reader would take what begins here for an escaped character: _x005F_.
bool isEscape(std::string_view text) {
  return text.size() >= 7 && text.substr(0, 2) == "_x" && text[6] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + 6, [](char c) {
           return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
         });
}

bool isPlain(std::string_view text) {
  return text.size() <= kLongestText && std::all_of(text.begin(), text.end(), [](char c) {
           return c >= 0x20 && c <= 0x7E && c != '_';
         });
}

struct Held {
  std::string text;
  bool cut = false;
};

Held held(std::string_view text) {
  if (isPlain(text)) return {std::string(text)};
  Held result;
  std::size_t units = 0, ellipsisAt = 0;
  for (std::size_t at = 0; at < text.size();) {
    const tsql::CodePoint c = tsql::decode(text, at);
    std::string_view piece = isAllowed(c) ? text.substr(at, c.size) : kReplacement;
    if (isEscape(text.substr(at))) piece = kEscapedUnderscore;
    const std::size_t more = piece == kEscapedUnderscore ? piece.size() : unitsOf(c);
    if (units + more > kLongestText) {
      result.text.resize(ellipsisAt);
      result.text += kEllipsis;
      result.cut = true;
      break;
    }
    result.text += piece;
    units += more;
    if (units < kLongestText) ellipsisAt = result.text.size();
    at += c.size;
  }
  return result;
}

}  // namespace

std::string cellText(std::string_view text) {
  return held(text).text;
}

bool isCut(std::string_view text) {
  // An escape takes seven characters for one.
  return text.size() > kLongestText / kEscapedUnderscore.size() && held(text).cut;
}

std::string_view firstUnits(std::string_view text, std::size_t size) {
  std::size_t at = 0;
  for (std::size_t units = 0; at < text.size();) {
    const tsql::CodePoint c = tsql::decode(text, at);
    if ((units += unitsOf(c)) > size) break;
    at += c.size;
  }
  return text.substr(0, at);
}

bool isExact(const Decimal& amount) {
  const auto fits = [](collections::int128 c) { return c < kExactBelow && c > -kExactBelow; };
  auto coefficient = amount.coefficient();
  while (!fits(coefficient) && coefficient % 10 == 0) coefficient /= 10;
  return fits(coefficient);
}

std::string columnName(std::size_t column) {
  std::string name(1, static_cast<char>('A' + column % 26));
  return column < 26 ? name : columnName(column / 26 - 1) + name;
}

std::string cellName(std::string_view sheet, std::uint32_t row, std::size_t column, bool absolute) {
  const char* fixed = absolute ? "$" : "";
  return fmt::format("'{}'!{}{}{}{}", sheet, fixed, columnName(column), fixed, row + 1);
}

std::string SheetNames::add(std::string_view title, std::size_t part) {
  std::string name;
  for (const char c : cellText(title)) {
    if (c == '\'') {
      name += "’";  // a name between quotes
    } else {
      name += static_cast<unsigned char>(c) < 0x20 ||
                      std::string_view("[]:*?/\\#").find(c) != std::string_view::npos
                  ? '_'
                  : c;
    }
  }
  if (name.empty()) name = "_";
  if (collections::equalsIgnoringCase(name, "History")) name += "_";  // the reader's own
  for (;; ++part) {
    const std::string ending = part == 1 ? "" : fmt::format(" ({})", part);
    std::string whole{firstUnits(name, kLongestName - ending.size())};
    whole += ending;
    if (taken_.insert(collections::lowerCased(whole)).second) return whole;
  }
}

}  // namespace velmora::report::workbook
