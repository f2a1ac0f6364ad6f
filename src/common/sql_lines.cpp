#include "checks/closing/sql_lines.h"

namespace velmora::closing {

SqlLines& SqlLines::line(std::string_view text) {
  if (!text_.empty()) text_ += "\r\n";
  text_ += text;
  return *this;
}

SqlLines& SqlLines::lineIf(bool condition, std::string_view text) {
  return condition ? line(text) : *this;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  SqlLines query;
  for (const std::string& part : parts) {
    if (!query.text().empty()) query.line(separator);
    query.line(part);
  }
  return query.text();
}

}  // namespace velmora::closing
