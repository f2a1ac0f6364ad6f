#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "velmora/ado/connection.h"

namespace velmora::cli {

/// What was copied of one table.
struct CopiedTable {
  std::string name;
  std::int64_t rows = 0;
  std::size_t sums = 0;  ///< columns whose sums were compared
};

struct CopyOptions {
  /// Called after every piece with the rows of `table` so far, and their number.
  std::function<void(const std::string& table, std::int64_t done, std::int64_t total)> progress;
  /// Rows read at a time from tables that begin with a number.
  std::int64_t pieceRows = 100'000;
};

/// Makes the tables of an account set in `target`, an empty embedded database, and fills
/// them from `source`; then holds row counts and the sums of decimal columns of every table
/// against the source. Columns that only the source has are left behind, and so are its other
/// tables; those of the user's own item classes come along.
///
/// Raises Failure naming table and column for one that the source lacks, and the table
/// whose rows or sums differ; the provider's error for what cannot be read or written.
std::vector<CopiedTable> copyAccountSet(ado::Connection& source, ado::Connection& target,
                                        const CopyOptions& options);

}  // namespace velmora::cli
