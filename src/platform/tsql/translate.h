#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/tsql/ast.h"
#include "platform/tsql/catalog.h"
#include "platform/tsql/engine_functions.h"
#include "velmora/collections/date.h"
#include "velmora/collections/variant.h"

namespace velmora::tsql {

/// A local variable or a statement parameter: its declared type and its value now.
/// The value is Null or of the Variant type of a recordset cell of that SqlType.
struct Variable {
  SqlType type;
  collections::Variant value = collections::Null{};
};

struct IgnoreCase {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept;
};

/// Variables by name, '@' included.
using Variables = std::map<std::string, Variable, IgnoreCase>;

/// What a statement sees when it is executed.
struct Scope {
  Catalog& catalog;
  const Variables& variables;
  std::span<const Variable> parameters;  ///< for "?", in order of appearance in the batch
  collections::Date now;                 ///< getdate(), one value for the whole statement
  /// Changes to permanent tables are refused.
  bool readOnly = false;
  std::int64_t rowCount = 0;  ///< @@rowcount
};

/// A statement that answers rows: column `n` of the DuckDB result is `columns[n]`, of
/// exactly the engine type engineType() gives.
struct Rows {
  struct Column {
    std::string name;  ///< empty for an expression without alias
    SqlType type;
    bool nullable = true;
  };
  std::string sql;
  std::vector<Column> columns;
};

/// insert, update, delete, truncate. DuckDB counts the rows that the one statement
/// changed.
struct Change {
  std::string sql;
  /// Name of the table whose identity counter moves on by the number of rows inserted
  /// (times its increment); empty: none.
  std::string identityTable;
  /// truncate table: the counter of this table starts over; empty: none.
  std::string identityReset;
};

/// create table, create view.
struct CreateTable {
  TableInfo table;  ///< objectId is 0: the catalogue gives it one
  std::vector<std::string> sql;
};

/// select ... into: one statement creates and fills the table.
struct SelectInto {
  TableInfo table;  ///< as for CreateTable
  std::string sql;
};

/// drop table, drop view: `sql[n]` drops `tables[n]` (names as declared). With IF EXISTS
/// a missing one is left out.
struct DropTables {
  std::vector<std::string> tables;
  std::vector<std::string> sql;
};

/// select @v = ...: the last row's values go to the variables; no row changes nothing.
struct Assign {
  std::string sql;
  /// Column n of the result goes to variables[n], already of the variable's type.
  std::vector<std::string> variables;
};

/// create index, drop index: checked; only unique indexes exist in DuckDB, for others
/// there is nothing to run.
struct IndexChange {
  std::vector<std::string> sql;
  std::optional<TableInfo> table;  ///< the table with its indexes afterwards; absent: as it was
};

using Action = std::variant<Rows, Change, CreateTable, SelectInto, DropTables, Assign, IndexChange>;

struct Translation {
  Action action;
  /// Functions that must be known to DuckDB before the statement runs.
  std::vector<DecimalFunction> functions;
};

/// What `statement` becomes: a query, a change or a definition. Names are resolved
/// here, so this is called when the statement is executed. Flow, variables, options,
/// transactions and print are the caller's; for their expressions see the two functions
/// below.
/// Raises com::Error kProvider, the text beginning with SQL Server's number, for
/// instance "208: Invalid object name 't_x' (line 1, column 15)"; a construct that is
/// not supported is refused with its place.
Translation translate(const Statement& statement, const Scope& scope);

/// The condition of an IF as a query of one row and one cell: 1, or 0 when it is false
/// or unknown (column type bit).
Translation translateCondition(const Expression& condition, const Scope& scope);

/// The value of SET @v = ... as a query of one row and one cell, converted to `type`.
Translation translateValue(const Expression& value, const SqlType& type, const Scope& scope);

}  // namespace velmora::tsql
