#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tsql/binding/names/catalog.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/sql_type.h"
#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// A column that a FROM clause offers.
struct SourceColumn {
  std::string name;  ///< as declared
  SqlType type;
  bool nullable = true;
  std::string engineName = {};  ///< where it is not `name`

  std::string quoted() const;  ///< as DuckDB SQL names it
};

/// A table, view or derived table of a FROM clause.
struct Source {
  std::string alias;   ///< as the query names it
  std::string engine;  ///< the alias in DuckDB SQL, quoted; empty: columns stand alone
  std::vector<SourceColumn> columns;
  const TableInfo* table = nullptr;  ///< a stored table: it has row numbers
  /// Sets of columns whose values tell its rows apart: its primary key, its unique
  /// indexes, the keys a derived table is grouped by (no columns: it has one row).
  std::vector<std::vector<std::string>> uniqueKeys;

  std::string columnSql(const SourceColumn& column) const;
  std::string columnList() const;  ///< `("a", "b")`: all columns, as DuckDB SQL names them
};

/// What a grouped query's expressions may use of its rows: one key of GROUP BY.
struct GroupKey {
  std::string plainSql;  ///< the key as written, bound without grouping
  std::string groupSql;  ///< what GROUP BY names
  std::string valueSql;  ///< the key's value in the select list
  std::size_t nodeKind;  ///< alternative of ExpressionNode
  SqlType type;
};

/// A common table expression: WITH name AS (...).
struct CommonTableInfo {
  std::string engine;  ///< quoted
  std::vector<SourceColumn> columns;
};
using CommonTables = std::map<std::string, CommonTableInfo, IgnoreCase>;

struct Accumulation;

/// The names one SELECT sees.
struct QueryScope {
  const QueryScope* outer = nullptr;
  std::vector<Source> sources;
  CommonTables commonTables;
  bool grouped = false;  ///< GROUP BY, HAVING or an aggregate
  /// An aggregate's argument sees the rows themselves. It may stand in a query within this
  /// one, which holds its scope as constant.
  mutable bool insideAggregate = false;
  bool aggregatesAllowed = true;
  bool windowsAllowed = true;  ///< functions with OVER stand in the select list and ORDER BY
  /// The select assigns to variables that its own expressions read; else null.
  Accumulation* accumulation = nullptr;
  std::vector<GroupKey> keys;

  /// The common table of that name, in this query or around it; nullptr: none.
  const CommonTableInfo* findCommonTable(std::string_view name) const;
  /// An alias for DuckDB that no source of this query or of those around it has.
  std::string engineAlias(std::string_view alias) const;
};

struct ColumnMatch {
  const QueryScope* scope = nullptr;
  const Source* source = nullptr;
  const SourceColumn* column = nullptr;
};

/// The column a name means. Raises 207 for an unknown column, 209 for an ambiguous one,
/// 4104 for an unknown prefix.
ColumnMatch resolveColumn(const QueryScope& scope, const QualifiedName& name);

/// The FROM item that `t.*` or an update's target means; nullptr when there is none.
const Source* findSource(const QueryScope& scope, std::string_view name);

/// Adds a FROM item. Raises 1013 when its name is taken.
void addSource(QueryScope& scope, Source source, Position position);

/// Gives other names in DuckDB SQL to those columns of a FROM item that are called like an item
/// of `around` or of the queries around that: DuckDB would take the item's "t.a" for a field of
/// column t. Whether there are any.
bool renameHiding(Source& source, const QueryScope* around);

}  // namespace velmora::tsql
