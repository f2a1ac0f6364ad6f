#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/tsql/binding/names/catalog.h"
#include "platform/tsql/binding/types/sql_type.h"

/// What a statement becomes for whoever runs it.
namespace velmora::tsql {

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
  /// Name of the table changed; its keys tell which error a duplicate is.
  std::string table;
  /// The rows of OUTPUT, which `sql` answers; absent without.
  std::optional<Rows> output;
  /// truncate table: the counter of this table starts over; empty: none.
  std::string identityReset;
  bool insert = false;  ///< new rows: @@identity is theirs
  bool counted = true;  ///< the number of rows is told; not that of truncate table
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
  /// One row with the variables' final values and, behind them, the number of rows read.
  bool counted = false;
};

/// alter table: the table as it is afterwards.
struct AlterTable {
  TableInfo table;
  std::vector<std::string> sql;
};

/// create index, drop index: checked; only unique indexes exist in DuckDB, for others
/// there is nothing to run.
struct IndexChange {
  std::vector<std::string> sql;
  std::optional<TableInfo> table;  ///< the table with its indexes afterwards; absent: as it was
};

using Action = std::variant<Rows, Change, CreateTable, SelectInto, DropTables, Assign, IndexChange,
                            AlterTable>;

}  // namespace velmora::tsql
