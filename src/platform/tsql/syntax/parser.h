#pragma once

#include <string_view>

#include "platform/tsql/syntax/ast.h"
#include "platform/tsql/syntax/limits.h"

namespace velmora::tsql {

/// Parses the statements of one batch (without GO), separated by `;` or by nothing. The
/// tree owns its texts. Names are not resolved: the batch may name what does not exist.
/// Raises SyntaxError for a construct that is unknown, refused, or beyond the limits of limits.h.
Batch parse(std::string_view text);

/// A value and a query alone, such as a kept default and the text of a view.
ExpressionPtr parseValue(std::string_view text);
QueryPtr parseQuery(std::string_view text);

}  // namespace velmora::tsql
