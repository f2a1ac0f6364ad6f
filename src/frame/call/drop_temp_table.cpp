#include "frame/call/drop_temp_table.h"

#include <string>

#include "frame/call/kept_error_info.h"

namespace velmora {

void DropTempTable(ado::Connection& connection, std::string_view table) noexcept {
  try {
    const KeptErrorInfo kept;
    connection.Execute("drop Table " + std::string(table));
  } catch (...) {
    // A work table that is not there is as good as dropped.
  }
}

}  // namespace velmora
