#pragma once

#include <utility>
#include <vector>

#include "frame/call/drop_temp_table.h"

namespace velmora {

/// Room for an operation's work tables. A session may be pooled: tables of these names are
/// dropped at once, whoever left them there, and at the end of the scope, on every path.
class ScopedWorkTables {
 public:
  /// `connection` outlives this.
  ScopedWorkTables(ado::Connection& connection, std::vector<const char*> tables)
      : connection_(connection), tables_(std::move(tables)) {
    drop();
  }
  ~ScopedWorkTables() { drop(); }
  ScopedWorkTables(const ScopedWorkTables&) = delete;
  ScopedWorkTables& operator=(const ScopedWorkTables&) = delete;

 private:
  void drop() noexcept {
    for (const char* table : tables_) DropTempTable(connection_, table);
  }

  ado::Connection& connection_;
  std::vector<const char*> tables_;
};

}  // namespace velmora
