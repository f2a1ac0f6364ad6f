#include "frame/call/drop_temp_table.h"

#include <string>

#include "velmora/com/error.h"

namespace velmora {

void DropTempTable(ado::Connection& connection, std::string_view table) noexcept {
  try {
    connection.Execute("drop Table " + std::string(table));
  } catch (...) {
    com::ClearErrorInfo();
  }
}

}  // namespace velmora
