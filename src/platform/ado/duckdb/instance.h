#pragma once

#include <duckdb.h>
#include <string>

#include "platform/ado/duckdb/permanent_tables.h"
#include "platform/ado/duckdb/settings.h"

namespace velmora::ado::embedded {

/// A folder for what does not fit in memory; made when the database is opened, in the
/// system's temporary folder and for this user only, so that nothing is ever written
/// beside an account set that is only read. Gone with the object, also when the program ends by
/// std::quick_exit.
class SpillFolder {
 public:
  SpillFolder();
  SpillFolder(const SpillFolder&) = delete;
  SpillFolder& operator=(const SpillFolder&) = delete;
  ~SpillFolder();
  /// Empty when there is no temporary folder to write to; the engine then has to do
  /// with its memory.
  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
};

/// An open database file (or one in memory): the engine and the catalogue of its
/// permanent tables, shared by all connections of this process to it.
class Instance {
 public:
  /// Opens it. Raises com::error::kProviderConnect naming the file and what is wrong.
  explicit Instance(const Settings& settings);
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;
  ~Instance() { duckdb_close(&database_); }

  duckdb_database handle() const noexcept { return database_; }
  bool readOnly() const noexcept { return readOnly_; }
  PermanentTables& tables() noexcept { return tables_; }

 private:
  SpillFolder spill_;
  duckdb_database database_ = nullptr;
  bool readOnly_;
  PermanentTables tables_;
};

}  // namespace velmora::ado::embedded
