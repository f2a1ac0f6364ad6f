#pragma once

#include <string_view>

#include "platform/tsql/ast.h"

namespace velmora::tsql {

/// Expressions, subqueries, parentheses and blocks nest at most this deep. Sums, AND, OR and
/// UNION chains are flat and do not count.
inline constexpr int kMaxDepth = 200;
/// Tables of one FROM clause.
inline constexpr int kMaxTables = 256;
/// Bytes of one batch.
inline constexpr std::size_t kMaxBatchSize = 64UL * 1024 * 1024;

/// Parses the statements of one batch (without GO), separated by `;` or by nothing. The
/// tree owns its texts. Names are not resolved: the batch may name what does not exist.
/// Raises SyntaxError for a construct that is unknown, refused, or beyond the limits above.
Batch parse(std::string_view text);

}  // namespace velmora::tsql
