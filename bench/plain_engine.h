#pragma once

#include <cstddef>
#include <duckdb.h>
#include <functional>
#include <string>
#include <vector>

namespace velmora::bench {

/// The engine by itself on an account set's file, for queries written by hand.
class PlainEngine {
 public:
  enum class Mode { read, write };

  /// Raises std::runtime_error, as everything else here.
  explicit PlainEngine(const std::string& file, Mode mode = Mode::read);
  PlainEngine(const PlainEngine&) = delete;
  PlainEngine& operator=(const PlainEngine&) = delete;
  ~PlainEngine();

  /// Runs statements and takes every cell out of the last result, as any client does;
  /// answers how many cells there were.
  std::size_t run(const std::string& sql) const;

  /// The first column of a query as texts.
  std::vector<std::string> texts(const std::string& sql) const;

 private:
  duckdb_result execute(const std::string& sql) const;

  duckdb_database database_ = nullptr;
  duckdb_connection connection_ = nullptr;
};

/// A hand-written query of bench/queries with {name} replaced by values.
std::string handWritten(const std::string& name,
                        const std::vector<std::pair<std::string, std::string>>& values);

}  // namespace velmora::bench
