#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/syntax/position.h"

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
  std::optional<std::string> topPercent;  ///< a number from 0 to 100
  bool withTies = false;                  ///< with as many rows as equal the last in the order
  std::vector<OrderTerm> orderBy;
  /// Terms that order the rows as they come without ORDER BY; see order_rules.h.
  std::vector<std::string> naturalOrder;
  /// Output columns whose values tell the rows apart; absent: not known.
  std::optional<std::vector<std::string>> uniqueKey;
  std::vector<std::string> variables;  ///< of select @v = ..., one for each output or step
  /// Assignments that read each other: over the outputs, which are their inputs.
  std::vector<Bound> steps;

  bool isLimited() const { return top || topPercent; }
};

struct BoundBody;

struct BoundUnion {
  std::vector<BoundBody> branches;
  /// The branches up to this one lose their duplicates; 0: UNION ALL throughout.
  std::size_t distinctBranches = 0;
};

/// EXCEPT or INTERSECT of two branches.
struct BoundSetQuery {
  bool intersect = false;
  std::vector<BoundBody> branches;
};

struct BoundBody {
  std::variant<BoundSelect, BoundUnion, BoundSetQuery> node;
  std::vector<OutputColumn> columns;
};

struct BoundQuery {
  std::string with;  ///< the WITH clause, or nothing
  BoundBody body;
  std::vector<OrderTerm> orderBy;  ///< of a union
};

/// The one column of a subquery used as a value; raises 116 when there are more.
const OutputColumn& onlyColumn(const BoundQuery& query, Position position);

const std::vector<OutputColumn>& columnsOf(const BoundQuery& query);
/// The types of its columns.
std::vector<SqlType> typesOf(const BoundQuery& query);

}  // namespace velmora::tsql
