#include "cli/copy/account_set_copy.h"

#include <fmt/format.h>

#include "cli/copy/set_tables.h"
#include "cli/failure.h"
#include "velmora/ado/data_type.h"

namespace velmora::cli {

namespace {

using collections::Variant;

/// One table on its way from the source to the target.
class TableCopy {
 public:
  TableCopy(ado::Connection& source, ado::Connection& target, const SetTable& table,
            const CopyOptions& options)
      : source_(source), target_(target), table_(table), options_(options) {}

  CopiedTable run() {
    const Totals wanted = totals(source_);
    const std::int64_t total = wanted.at(0).toInt64();
    const auto names = table_.columnNames();
    readInPieces(source_, table_, total, options_.pieceRows, [&](const ado::Rowset& rows) {
      store(names, rows);
      if (options_.progress) options_.progress(table_.name, done_, total);
    });
    compare(wanted, totals(target_));
    return {table_.name, done_, wanted.size() - 1};
  }

 private:
  /// The number of rows, then the sum of each decimal column.
  using Totals = std::vector<Variant>;

  Totals totals(ado::Connection& connection) const {
    std::string query = "select count(*) as FRows";
    for (const auto& column : table_.columns)
      if (kindOf(column.type) == ado::DataKind::decimal)
        query += fmt::format(", sum({0}) as {0}", column.name);
    const auto row = connection.Execute(query + " from " + table_.name);
    Totals totals;
    for (std::size_t i = 0; i < row->fieldCount(); ++i) totals.push_back(row->GetValue(i));
    return totals;
  }

  void store(const std::vector<std::string>& names, const ado::Rowset& rows) {
    const auto bulk = target_.provider().bulkInsert(table_.name, names);
    for (std::size_t i = 0; i < rows.cells.size(); ++i) {
      bulk->append(rows.cells[i]);
      if ((i + 1) % names.size() == 0) bulk->endRow();
    }
    bulk->finish();
    done_ += static_cast<std::int64_t>(rows.rowCount());
  }

  void compare(const Totals& wanted, const Totals& found) const {
    std::vector<std::string> what{"rows"};
    for (const auto& column : table_.columns)
      if (kindOf(column.type) == ado::DataKind::decimal) what.push_back("sum of " + column.name);
    for (std::size_t i = 0; i < wanted.size(); ++i)
      if (!same(wanted[i], found.at(i)))
        throw Failure(fmt::format(
            "{}, {}: {} in the source, {} in the copy; did someone work in the source meanwhile?",
            table_.name, what[i], shown(wanted[i]), shown(found[i])));
  }

  static bool same(const Variant& a, const Variant& b) {
    if (a.isNull() || b.isNull()) return a.isNull() == b.isNull();
    return a.toDecimal() == b.toDecimal();
  }
  static std::string shown(const Variant& value) {
    return value.isNull() ? "none" : value.toText();
  }

  ado::Connection& source_;
  ado::Connection& target_;
  const SetTable& table_;
  const CopyOptions& options_;
  std::int64_t done_ = 0;
};

}  // namespace

std::vector<CopiedTable> copyAccountSet(ado::Connection& source, ado::Connection& target,
                                        const CopyOptions& options) {
  std::vector<CopiedTable> copied;
  for (const SetTable& table : makeTables(source, target))
    copied.push_back(
        atTable(table, [&] { return TableCopy(source, target, table, options).run(); }));
  return copied;
}

}  // namespace velmora::cli
