#pragma once

#include <cstdint>
#include <map>
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
struct Query {
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

struct CreateTable {
  TableInfo table;  ///< objectId 0: the catalogue gives it one
  std::vector<std::string> sql;
};

/// select ... into: the statement creates and fills the table.
struct SelectInto {
  TableInfo table;
  std::string sql;
  /// The identity column's next value, when an identity column was copied, is not set:
  /// a copied column is an ordinary one.
};

struct DropTable {
  std::vector<std::string> tables;  ///< names as declared
  std::vector<std::string> sql;     ///< one for each
};

/// select @v = ...: the last row's values go to the variables; no row changes nothing.
struct Assign {
  std::string sql;
  /// Column n of the result goes to variables[n], already of the variable's type.
  std::vector<std::string> variables;
};

/// Checked, but nothing has to run (an index of a table, set nocount).
struct NoOperation {};

using Action =
    std::variant<Query, Change, CreateTable, SelectInto, DropTable, Assign, NoOperation>;

struct Translation {
  Action action;
  /// Functions that must be known to DuckDB before the statement runs.
  std::vector<DecimalFunction> functions;
};

/// What `statement` becomes: a query, a change or a definition. Names are resolved
/// here, so this is called when the statement is executed. Control flow (if, while,
/// begin, declare, set) is the caller's; for it see the two functions below.
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
