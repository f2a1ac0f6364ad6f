#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "velmora/ado/connection_string.h"

namespace velmora::ado::embedded {

enum class OpenMode {
  read,       ///< the file must exist; permanent tables cannot be changed
  readWrite,  ///< the file must exist
  create,     ///< as readWrite; a missing file is created
};

/// What a connection string says about the embedded database.
struct Settings {
  /// The database file; empty for a database in memory, private to its connection.
  std::string file;
  OpenMode mode = OpenMode::read;
  std::optional<int> threads;         ///< the engine's own choice when absent
  std::optional<std::string> memory;  ///< as the engine reads it, for instance "2GB"
  std::optional<int> blockSize;       ///< of a file that is created; the engine's own when absent

  bool inMemory() const noexcept { return file.empty(); }
  bool readOnly() const noexcept { return mode == OpenMode::read; }
};

/// Reads
///   Data Source=FILE|:memory:   required
///   Mode=Read|ReadWrite|Create  default Read; a database in memory is always writable
///   Threads=N                   1 to 256
///   Memory=N[KB|MB|GB|TB]       the most the engine may hold in memory, at least 64MB
///   Block Size=N                bytes, a power of 2 from 16384 to 262144 (the default), in
///                               which a new file keeps its tables
/// What a server database would want to know (user, password, catalogue, time-out) is
/// ignored; any other name is refused. Raises com::error::kProviderConnect naming the
/// property, its value and what was expected.
Settings readSettings(const ConnectionString& text);

}  // namespace velmora::ado::embedded
