#include "frame/call/drop_temp_table.h"

#include <string>

namespace velmora {

void DropTempTable(ado::Connection& connection, std::string_view table) noexcept {
  try {
    connection.Execute("drop Table " + std::string(table));
  } catch (...) {
    // A work table that is not there is as good as dropped.
  }
}

}  // namespace velmora
