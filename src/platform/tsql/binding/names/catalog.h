#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tsql/binding/types/sql_type.h"

namespace velmora::tsql {

/// Numbering of an identity column.
struct IdentityColumn {
  std::int64_t seed = 1;
  std::int64_t increment = 1;
};

struct ColumnInfo {
  std::string name;  ///< as declared
  SqlType type;
  bool nullable = true;
  std::optional<IdentityColumn> identity;
  /// The default as a T-SQL expression, bound anew by every statement that needs it; empty:
  /// none.
  std::string defaultText;
  /// The default of a table made elsewhere, as a DuckDB expression; empty: none.
  std::string engineDefault;
  /// How the engine's table names it, see engineColumnName; empty: as `name`.
  std::string engineName;

  const std::string& nameInEngine() const { return engineName.empty() ? name : engineName; }
  bool computed = false;  ///< from the row's other columns; takes no value
};

/// A unique index or constraint: no two rows have the same values in its columns, texts
/// compared by their own rules.
struct UniqueIndex {
  std::string name;
  std::vector<std::string> columns;
};

struct TableInfo {
  std::string name;  ///< as declared, without schema; a temporary table's begins with '#'
  bool temporary = false;
  /// How DuckDB SQL names the table, quoted and qualified, for instance "temp"."#t".
  std::string engineName;
  std::int64_t objectId = 0;  ///< what object_id() answers; not 0
  std::vector<ColumnInfo> columns;
  std::vector<std::string> primaryKey;  ///< column names; empty: none
  std::vector<UniqueIndex> uniqueIndexes;
  bool isView = false;  ///< cannot be changed
  bool hasChecks = false;
  /// The query of a view as T-SQL, bound anew by every statement that reads it; empty for a
  /// view made elsewhere, which is the engine's.
  std::string viewText;
};

/// The tables that statements of one connection may name. The pointers handed out
/// stay good until the table is dropped.
class Catalog {
 public:
  virtual ~Catalog() = default;

  /// The table of that name, letter case ignored; '#' names are temporary tables.
  /// nullptr when there is none. System views are not asked for here.
  virtual const TableInfo* findTable(std::string_view name) = 0;

  /// The value the next row's identity column takes.
  virtual std::int64_t nextIdentity(const TableInfo& table) = 0;

  /// Every table of the connection (permanent ones and its own temporary ones), for
  /// sysobjects and syscolumns.
  virtual std::vector<const TableInfo*> tables() = 0;
};

}  // namespace velmora::tsql
