#include "cli/closing/message_template.h"

#include <vector>

#include "velmora/collections/format.h"

namespace velmora::cli {

namespace {

/// What stands before and behind the first bar.
std::pair<std::string_view, std::string_view> cutAtBar(std::string_view text) {
  const auto bar = text.find('|');
  if (bar == std::string_view::npos) return {text, {}};
  return {text.substr(0, bar), text.substr(bar + 1)};
}

}  // namespace

std::string taggedText(std::string_view tagged) {
  return std::string(cutAtBar(tagged).second);
}

std::string filledMessage(std::string_view messageTemplate, const ado::Recordset& row) {
  auto [text, columns] = cutAtBar(messageTemplate);
  std::vector<collections::Variant> values;
  while (!columns.empty()) {
    const auto comma = columns.find(',');
    values.push_back(row.GetValue(row.fieldIndex(columns.substr(0, comma))));
    columns = comma == std::string_view::npos ? std::string_view() : columns.substr(comma + 1);
  }
  return collections::FormatString(text, values);
}

}  // namespace velmora::cli
