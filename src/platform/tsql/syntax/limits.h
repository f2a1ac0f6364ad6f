#pragma once

#include <cstddef>

namespace velmora::tsql {

/// Expressions, subqueries, parentheses and blocks nest at most this deep. Sums, AND, OR and
/// UNION chains are flat and do not count.
inline constexpr int kMaxDepth = 200;
/// Tables of one FROM clause.
inline constexpr int kMaxTables = 256;
/// Bytes of one batch.
inline constexpr std::size_t kMaxBatchSize = 64UL * 1024 * 1024;

}  // namespace velmora::tsql
