#include "cli/copy/account_set_script.h"

#include <fmt/format.h>

#include "cli/copy/set_tables.h"
#include "cli/demo/scripts.h"
#include "cli/failure.h"

namespace velmora::cli {

namespace {

using collections::Variant;
using collections::VarType;

// A server takes at most 1,000 rows in one list of values, and long lists slowly.
constexpr std::int64_t kRowsAStatement = 200;

std::string textLiteral(std::string_view text) {
  std::string literal = "N'";
  for (const char c : text) {
    literal += c;
    if (c == '\'') literal += c;
  }
  return literal += '\'';
}

/// In the forms that a server reads alike in every language setting.
std::string dateLiteral(const collections::Date& date) {
  const auto at = date.parts();
  if (!date.hasTime()) return fmt::format("'{:04}{:02}{:02}'", at.year, at.month, at.day);
  return fmt::format("'{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}'", at.year, at.month, at.day,
                     at.hour, at.minute, at.second, at.microsecond / 1'000);
}

std::string literal(const Variant& value) {
  switch (value.type()) {
    case VarType::null:
      return "null";
    case VarType::boolean:
      return value.toBool() ? "1" : "0";
    case VarType::date:
      return dateLiteral(value.toDate());
    case VarType::decimal:
      return value.toDecimal().toString();
    case VarType::string:
      return textLiteral(value.toText());
    default:
      return value.toText();
  }
}

/// Writes the rows of one table in statements of at most so many rows.
class InsertStatements {
 public:
  InsertStatements(std::ostream& out, const SetTable& table)
      : out_(out), table_(table), names_(table.columnNames()) {}

  void add(const ado::Rowset& rows) {
    for (std::size_t i = 0; i < rows.cells.size(); ++i) {
      if (i % names_.size() == 0) beginRow();
      out_ << literal(rows.cells[i]) << ((i + 1) % names_.size() == 0 ? ")" : ", ");
    }
  }
  void finish() {
    if (written_ > 0) out_ << "\nGO\n\n";
  }
  std::int64_t written() const { return written_; }

 private:
  void beginRow() {
    const bool first = written_++ % kRowsAStatement == 0;
    if (first && written_ > 1) out_ << "\nGO\n";
    if (first)
      out_ << fmt::format("insert into {} ({}) values", table_.name, fmt::join(names_, ", "));
    out_ << (first ? "\n    (" : ",\n    (");
  }

  std::ostream& out_;
  const SetTable& table_;
  std::vector<std::string> names_;
  std::int64_t written_ = 0;
};

CopiedTable writeRows(ado::Connection& source, std::ostream& out, const SetTable& table,
                      const CopyOptions& options) {
  const std::int64_t total =
      source.Execute("select count(*) as FRows from " + table.name)->GetValue(0).toInt64();
  InsertStatements inserts(out, table);
  readInPieces(source, table, total, options.pieceRows, [&](const ado::Rowset& rows) {
    inserts.add(rows);
    if (options.progress) options.progress(table.name, inserts.written(), total);
  });
  inserts.finish();
  if (inserts.written() != total)
    throw Failure(fmt::format("{}: {} of {} rows could be read; did someone work in it meanwhile?",
                              table.name, inserts.written(), total));
  return {table.name, inserts.written(), 0};
}

}  // namespace

std::vector<CopiedTable> writeScript(ado::Connection& source, std::ostream& out,
                                     const CopyOptions& options) {
  const auto model = com::make<ado::Connection>();
  model->Open("Provider=Velmora.Embedded;Data Source=:memory:;Mode=ReadWrite");
  const auto tables = makeTables(source, *model);
  for (const EmbeddedText& script : demo::schemaScripts()) out << script.text << '\n';
  for (const SetTable& table : tables)
    if (table.ownItemClass) out << ownItemClassSql(table) << "\nGO\n\n";
  std::vector<CopiedTable> written;
  written.reserve(tables.size());
  for (const SetTable& table : tables)
    written.push_back(atTable(table, [&] { return writeRows(source, out, table, options); }));
  return written;
}

}  // namespace velmora::cli
