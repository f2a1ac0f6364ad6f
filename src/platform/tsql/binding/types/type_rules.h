#pragma once

#include "platform/tsql/binding/types/sql_type.h"
#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// The type in which two values are compared, or that a CASE, COALESCE or UNION of both
/// has: the one of higher precedence, wide enough for both.
SqlType commonType(const SqlType& a, const SqlType& b);

/// The decimal that holds every value of an exact type; money stays four decimals.
SqlType asDecimal(const SqlType& type);

/// Money with money or integers stays money in arithmetic.
bool staysMoney(const SqlType& a, const SqlType& b);

/// The type of `a op b` for decimals.
SqlType decimalResult(ArithmeticOperator op, const SqlType& a, const SqlType& b);

/// The type of sum() over a column; avg() has the same, but decimals get at least six
/// digits of the fraction.
SqlType sumType(const SqlType& type);
SqlType averageType(const SqlType& type);

/// The text type of `a + b`.
SqlType concatenationType(const SqlType& a, const SqlType& b);

}  // namespace velmora::tsql
