#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

// FROM ---------------------------------------------------------------------------------

struct TableSource;
using TableSourcePtr = std::unique_ptr<TableSource>;

/// A table or view; locking hints (`with (nolock)`) are accepted and dropped.
struct NamedTable {
  QualifiedName name;
  std::optional<std::string> alias;
};

/// `(select ...) as alias (column, ...)`.
struct DerivedTable {
  QueryPtr query;
  std::string alias;
  std::vector<std::string> columns;  // empty: the query's own names
};

enum class JoinKind { Inner, Left, Right, Full, Cross };

struct Join {
  JoinKind kind = JoinKind::Inner;
  TableSourcePtr left;
  TableSourcePtr right;
  ExpressionPtr on;  // null for Cross only
};

struct TableSource {
  Position position;
  std::variant<NamedTable, DerivedTable, Join> node;
};

// SELECT -------------------------------------------------------------------------------

/// `*`, `t.*`.
struct StarItem {
  std::optional<QualifiedName> qualifier;
};

/// `expr`, `expr as a`, `expr a`, `expr 'a'`, `a = expr`.
struct ColumnItem {
  ExpressionPtr value;
  std::optional<std::string> alias;
};

/// `@v = expr`.
struct AssignmentItem {
  std::string variable;  // with its at sign
  ExpressionPtr value;
};

struct SelectItem {
  Position position;
  std::variant<StarItem, ColumnItem, AssignmentItem> node;
};

struct GroupBy {
  std::vector<ExpressionPtr> keys;
  bool rollup = false;  // `with rollup` or `rollup(...)`
};

struct Select {
  bool distinct = false;
  ExpressionPtr top;  // null without TOP
  bool percent = false;
  bool withTies = false;
  std::vector<SelectItem> items;
  std::optional<QualifiedName> into;  // only in a statement's first select
  std::vector<TableSourcePtr> from;   // comma list; empty without FROM
  ExpressionPtr where;                // null when left out
  std::optional<GroupBy> groupBy;
  ExpressionPtr having;  // null when left out
};

struct QueryBody;
using QueryBodyPtr = std::unique_ptr<QueryBody>;

/// `a union b union all c`, applied from the left; flat for the same reason as
/// ArithmeticExpression.
struct UnionQuery {
  struct Branch {
    bool all = false;
    QueryBodyPtr body;
  };
  QueryBodyPtr first;
  std::vector<Branch> rest;  // at least one
};

/// `a except b`, `a intersect b`.
struct SetQuery {
  bool intersect = false;
  QueryBodyPtr left;
  QueryBodyPtr right;
};

struct QueryBody {
  Position position;
  std::variant<Select, UnionQuery, SetQuery> node;
};

/// `with name (columns) as (query)`.
struct CommonTable {
  Position position;
  std::string name;
  std::vector<std::string> columns;  // empty: the query's own names
  QueryPtr query;
};

struct Query {
  std::vector<CommonTable> with;
  QueryBody body;
  std::vector<OrderItem> orderBy;
  std::optional<int> maxRecursion;  // option (maxrecursion n)
};

}  // namespace velmora::tsql
