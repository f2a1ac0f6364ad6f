#pragma once

#include <cstddef>

namespace velmora::tsql {

/// Expressions, subqueries, parentheses and blocks nest at most this deep. Sums, AND, OR and
/// UNION chains are flat and do not count.
inline constexpr int kMaxDepth = 200;
/// Tables of one FROM clause.
inline constexpr int kMaxTables = 256;
/// Bytes of the engine's text that one expression may become: what outgrows them is nested in
/// a way that would take the machine's memory.
inline constexpr std::size_t kMaxExpressionSize = 4UL * 1024 * 1024;
/// Expressions of grouped queries that are looked for among the keys, each bound for that once
/// more: queries within queries would double the work with each level.
inline constexpr int kMaxKeyTrials = 100'000;
/// Bytes of one batch.
inline constexpr std::size_t kMaxBatchSize = 64UL * 1024 * 1024;

}  // namespace velmora::tsql
