#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/tsql/ast.h"
#include "platform/tsql/bind_expression.h"

namespace velmora::tsql {

/// A column of a query's result.
struct OutputColumn {
  std::string name;  ///< empty: an expression without alias
  SqlType type;
  bool nullable = true;
};

struct OutputValue {
  std::string name;  ///< as OutputColumn
  Bound value;
  Position position;
};

/// A term of ORDER BY.
struct OrderTerm {
  Bound value;
  bool descending = false;
  std::optional<std::size_t> output;  ///< the column of the result it is
  Position position;
};

/// One SELECT, bound: its parts as DuckDB SQL.
struct BoundSelect {
  std::vector<OutputValue> outputs;
  std::string body;  ///< from FROM to HAVING
  bool grouped = false;
  bool distinct = false;
  std::optional<std::int64_t> top;
  std::vector<OrderTerm> orderBy;
  /// Terms that order the rows as they come without ORDER BY; see order_rules.h.
  std::vector<std::string> naturalOrder;
  /// Output columns whose values tell the rows apart; absent: not known.
  std::optional<std::vector<std::string>> uniqueKey;
  std::vector<std::string> variables;  ///< of select @v = ..., one for each output
};

struct BoundBody;

struct BoundUnion {
  std::vector<BoundBody> branches;
  /// The branches up to this one lose their duplicates; 0: UNION ALL throughout.
  std::size_t distinctBranches = 0;
};

struct BoundBody {
  std::variant<BoundSelect, BoundUnion> node;
  std::vector<OutputColumn> columns;
};

struct BoundQuery {
  std::string with;  ///< the WITH clause, or nothing
  BoundBody body;
  std::vector<OrderTerm> orderBy;  ///< of a union
};

/// Binds a whole query; `outer` is the query around it, if any.
BoundQuery bindQuery(Context& context, const QueryScope* outer, const Query& query);
BoundSelect bindSelect(Context& context, QueryScope& scope, const Select& select,
                       const std::vector<OrderItem>& orderBy);

/// The one column of a subquery used as a value; raises 116 when there are more.
const OutputColumn& onlyColumn(const BoundQuery& query, Position position);

std::vector<OutputColumn>& columnsOf(BoundQuery& query);
const std::vector<OutputColumn>& columnsOf(const BoundQuery& query);

/// The query as DuckDB SQL, column n of type types[n]; in any order unless TOP needs one.
std::string queryText(Context& context, const BoundQuery& query, const std::vector<SqlType>& types);
/// The same, rows in the order of ORDER BY or else the natural one.
std::string orderedQueryText(Context& context, const BoundQuery& query,
                             const std::vector<SqlType>& types);
/// With the columns' own types.
std::string orderedQueryText(Context& context, const BoundQuery& query);
/// With the columns' own types, in any order: what a derived table is.
std::string derivedText(Context& context, const BoundQuery& query);
/// The single column of texts by their comparison keys, for IN.
std::string keyQueryText(Context& context, const BoundQuery& query);
/// A query that has a row exactly when this one has.
std::string existenceText(Context& context, const BoundQuery& query);

/// A bound FROM clause (without the word FROM).
struct BoundFrom {
  std::string sql;
  /// Its sources one by one and all conditions of its joins.
  std::vector<std::string> relations;
  std::vector<BoundCondition> conditions;
  bool inner = true;  ///< no outer joins: the sources and conditions alone say the same
};

/// FROM: adds the sources to the scope.
BoundFrom bindFrom(Context& context, QueryScope& scope, const std::vector<TableSourcePtr>& from);

/// The stored table a name means; nullptr when there is none. Raises for names in other
/// databases.
const TableInfo* findTable(Context& context, const QualifiedName& name);
/// As findTable, raising 208 when there is none.
const TableInfo& requireTable(Context& context, const QualifiedName& name);

/// "key ASC NULLS FIRST" or "key DESC NULLS LAST": NULL is the lowest value.
std::string orderTerm(const Bound& value, bool descending);

bool containsAggregate(const Expression& expression);

}  // namespace velmora::tsql
