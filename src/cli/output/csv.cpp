#include <ostream>

#include "cli/output/result_writer.h"

namespace velmora::cli {

namespace {

/// At the start of the file a byte-order mark would be taken for the file's and a brace for
/// the start of JSON.
bool needsQuotes(const std::string& text) {
  return text.empty() || text.starts_with("\xEF\xBB\xBF") || text.starts_with('{') ||
         text.find_first_of(",\"\r\n") != std::string::npos;
}

void writeField(std::ostream& out, const std::string& text) {
  if (!needsQuotes(text)) {
    out << text;
    return;
  }
  out << '"';
  for (const char c : text) {
    if (c == '"') out << '"';
    out << c;
  }
  out << '"';
}

}  // namespace

void writeCsv(std::ostream& out, ado::Recordset& rows) {
  const std::size_t count = rows.fieldCount();
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) out << ',';
    writeField(out, rows.definition(i).name);
  }
  out << "\r\n";
  if (!rows.BOF()) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext()) {
    for (std::size_t i = 0; i < count; ++i) {
      if (i != 0) out << ',';
      const auto& value = rows.GetValue(i);
      if (!value.isNull()) writeField(out, cellText(value));
    }
    out << "\r\n";
  }
}

}  // namespace velmora::cli
