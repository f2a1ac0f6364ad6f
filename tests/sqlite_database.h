#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace velmora {

/// An empty SQLite database of its own behind the ODBC driver, gone with the object.
class SqliteDatabase {
 public:
  SqliteDatabase() {
    auto pattern = (std::filesystem::temp_directory_path() / "sqlite-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;
  ~SqliteDatabase() { std::filesystem::remove_all(folder_); }

  std::string dsn() const {
    return "Driver={SQLite3};SyncPragma=OFF;Database=" + (folder_ / "books.db").string();
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace velmora
