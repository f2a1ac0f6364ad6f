#include <ostream>

#include "cli/output/result_writer.h"

namespace velmora::cli {

namespace {

void writeField(std::ostream& out, const std::string& text) {
  if (!text.empty() && text.find_first_of(",\"\r\n") == std::string::npos) {
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
