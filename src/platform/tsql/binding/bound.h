#pragma once

#include <optional>
#include <string>

#include "platform/tsql/binding/types/sql_type.h"
#include "velmora/collections/variant.h"

namespace velmora::tsql {

/// A value whose names are resolved: its DuckDB expression and T-SQL type.
struct Bound {
  std::string sql;
  SqlType type;
  bool nullable = true;
  /// Evaluating it may raise an error (a text that is no number, a zero divisor), so it
  /// must only be reached by rows that the other conditions let through.
  bool canFail = false;
  /// DuckDB gives it exactly engineType(type), no cast is needed where that matters.
  bool exact = true;
  /// A number as written in the statement: beside a decimal it is just as wide as its digits,
  /// where variables, parameters and casts are as wide as their types.
  bool literal = false;
  /// The value of a constant.
  std::optional<collections::Variant> constant;

  bool isNull() const { return constant && constant->isNull(); }
};

/// A condition: a DuckDB expression that is true, false or NULL.
struct BoundCondition {
  std::string sql;
  bool canFail = false;
};

/// A constant of the type.
Bound constantOf(collections::Variant value, const SqlType& type);
/// A computed value.
Bound computed(std::string sql, const SqlType& type, bool canFail = false);
/// Whether its text is short enough to stand twice in an expression. What holds others is not:
/// nested, it would double with each level.
bool costsNothingTwice(const Bound& value);
/// The value as the body of engine::once names it.
Bound namedOnce(const Bound& value, std::size_t index);
/// The same value, cast where DuckDB would give another type than engineType(type).
std::string exactSql(const Bound& value);

}  // namespace velmora::tsql
