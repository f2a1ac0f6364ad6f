#include "cli/copy/account_set_copy.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

#include "cli/demo/scripts.h"
#include "cli/failure.h"
#include "velmora/ado/data_type.h"
#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

using collections::Variant;

using Columns = std::vector<ado::FieldDefinition>;

Columns columnsOf(ado::Connection& connection, const std::string& table) {
  const auto rows = connection.Execute("select * from " + table + " where 1 = 0");
  Columns columns;
  for (std::size_t i = 0; i < rows->fieldCount(); ++i) columns.push_back(rows->definition(i));
  return columns;
}

std::vector<std::string> tablesOf(ado::Connection& connection) {
  std::vector<std::string> names;
  const auto rows =
      connection.Execute("select name from sysobjects where xtype = 'U' order by name");
  for (; !rows->EOF_(); rows->MoveNext()) names.push_back(rows->GetValue(0).toText());
  return names;
}

bool isOfRowAccess(const std::string& table) {
  return table == "t_AccessSwitch" || table == "t_AccessRule";
}

/// One table on its way from the source to the target.
class TableCopy {
 public:
  TableCopy(ado::Connection& source, ado::Connection& target, std::string table,
            const CopyOptions& options)
      : source_(source),
        target_(target),
        table_(std::move(table)),
        columns_(columnsOf(target, table_)),
        options_(options) {
    for (const auto& column : columns_) names_.push_back(column.name);
  }

  CopiedTable run() {
    requireColumns();
    const Totals wanted = totals(source_);
    total_ = wanted.at(0).toInt64();
    if (total_ > options_.pieceRows && kindOf(columns_[0].type) == ado::DataKind::integer)
      copyByFirstColumn();
    else if (total_ > 0)
      copyRows("");
    compare(wanted, totals(target_));
    return {table_, done_, wanted.size() - 1};
  }

 private:
  /// The number of rows, then the sum of each decimal column.
  using Totals = std::vector<Variant>;

  void requireColumns() {
    const Columns there = columnsOf(source_, table_);
    for (const auto& column : columns_)
      if (std::ranges::none_of(there, [&](const auto& other) {
            return collections::equalsIgnoringCase(other.name, column.name);
          }))
        throw Failure(fmt::format("the source's table {} has no column {}", table_, column.name));
  }

  Totals totals(ado::Connection& connection) const {
    std::string query = "select count(*) as FRows";
    for (const auto& column : columns_)
      if (kindOf(column.type) == ado::DataKind::decimal)
        query += fmt::format(", sum({0}) as {0}", column.name);
    const auto row = connection.Execute(query + " from " + table_);
    Totals totals;
    for (std::size_t i = 0; i < row->fieldCount(); ++i) totals.push_back(row->GetValue(i));
    return totals;
  }

  /// In ranges of the first column's values, so that a large table need not fit in memory.
  void copyByFirstColumn() {
    const std::string& first = names_[0];
    const auto range = source_.Execute(
        fmt::format("select min({0}) as FFirst, max({0}) as FLast from {1}", first, table_));
    const std::int64_t from = range->GetValue(0).toInt64(), to = range->GetValue(1).toInt64();
    const std::int64_t pieces = (total_ + options_.pieceRows - 1) / options_.pieceRows;
    const std::int64_t width = (to - from) / pieces + 1;
    for (std::int64_t start = from; start <= to; start += width)
      copyRows(fmt::format(" where {0} >= {1} and {0} < {2}", first, start, start + width));
  }

  void copyRows(const std::string& condition) {
    auto results = source_.provider().execute(
        fmt::format("select {} from {}{}", fmt::join(names_, ", "), table_, condition), {});
    const ado::Rowset& rows = results.at(0).rows;
    const auto bulk = target_.provider().bulkInsert(table_, names_);
    for (std::size_t i = 0; i < rows.cells.size(); ++i) {
      bulk->append(rows.cells[i]);
      if ((i + 1) % names_.size() == 0) bulk->endRow();
    }
    bulk->finish();
    done_ += static_cast<std::int64_t>(rows.rowCount());
    if (options_.progress) options_.progress(table_, done_, total_);
  }

  void compare(const Totals& wanted, const Totals& found) const {
    std::vector<std::string> what{"rows"};
    for (const auto& column : columns_)
      if (kindOf(column.type) == ado::DataKind::decimal) what.push_back("sum of " + column.name);
    for (std::size_t i = 0; i < wanted.size(); ++i)
      if (!same(wanted[i], found.at(i)))
        throw Failure(fmt::format(
            "{}, {}: {} in the source, {} in the copy; did someone work in the source meanwhile?",
            table_, what[i], shown(wanted[i]), shown(found[i])));
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
  std::string table_;
  Columns columns_;
  std::vector<std::string> names_;
  const CopyOptions& options_;
  std::int64_t total_ = 0, done_ = 0;
};

}  // namespace

std::vector<CopiedTable> copyAccountSet(ado::Connection& source, ado::Connection& target,
                                        const CopyOptions& options) {
  demo::runScripts(target, demo::schemaScripts());
  std::set<std::string> there;
  for (const std::string& table : tablesOf(source)) there.insert(collections::lowerCased(table));
  std::vector<std::string> wanted = tablesOf(target);
  for (const std::string& table : wanted)
    if (!there.contains(collections::lowerCased(table)) && !isOfRowAccess(table))
      throw Failure("the source has no table " + table);
  std::vector<CopiedTable> copied;
  for (const std::string& table : wanted)
    if (there.contains(collections::lowerCased(table)))
      copied.push_back(TableCopy(source, target, table, options).run());
  return copied;
}

}  // namespace velmora::cli
