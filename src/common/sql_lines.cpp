#include "common/sql_lines.h"

#include "frame/call/text.h"

namespace velmora {

SqlLines& SqlLines::line(std::string_view text) {
  if (!text_.empty()) text_ += "\r\n";
  text_ += text;
  return *this;
}

SqlLines& SqlLines::lineIf(bool condition, std::string_view text) {
  return condition ? line(text) : *this;
}

SqlLines& SqlLines::lines(std::string_view text) {
  while (!text.empty()) line(cutAt(text, '\n'));
  return *this;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  SqlLines query;
  for (const std::string& part : parts) {
    if (!query.text().empty()) query.line(separator);
    query.line(part);
  }
  return query.text();
}

std::string quoted(std::string_view text) {
  std::string literal = "'";
  for (const char c : text) {
    if (c == '\'') literal += '\'';
    literal += c;
  }
  return literal += '\'';
}

}  // namespace velmora
