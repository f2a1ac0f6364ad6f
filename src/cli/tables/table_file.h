#pragma once

#include <functional>
#include <string>
#include <vector>

#include "velmora/ado/recordset.h"

namespace velmora::cli {

/// What the cells of a CSV column are; CSV itself does not say.
enum class ColumnKind { integer, amount, text };
using KindOfColumn = std::function<ColumnKind(const std::string& name)>;

/// The rows of a file, in memory and open for changes, on the first row: CSV with a header
/// line, or the JSON form of a recordset where the text begins with "{". An empty CSV cell
/// is NULL. Raises Failure naming file, line and column.
ado::RecordsetRef readTable(const std::string& file, const KindOfColumn& kindOf);

/// A column that a table lacks: its kind, and its value in each row of the table.
struct AddedColumn {
  std::string name;
  ColumnKind kind;
  std::function<ado::Variant(ado::Recordset& row)> value;
};

/// The same rows with further columns behind theirs; columns of amounts keep every digit
/// from then on, whatever decimals they had. Raises Failure naming column and value.
ado::RecordsetRef withColumns(const ado::RecordsetRef& table, const KindOfColumn& kindOf,
                              const std::vector<AddedColumn>& columns);

/// Whether the recordset has a column, letter case ignored.
bool hasColumn(const ado::Recordset& table, const std::string& name);

/// Every row of `rows` as a file, JSON when its name ends in ".json", else CSV. Raises
/// Failure when the file exists and `replace` is false.
void writeTableFile(const std::string& file, const ado::Recordset& rows, bool replace);

}  // namespace velmora::cli
