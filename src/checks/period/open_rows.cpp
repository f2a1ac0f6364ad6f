#include "checks/period/open_rows.h"

#include "velmora/com/error.h"

namespace velmora::period {

ado::RecordsetRef openRows(const ado::ConnectionRef& connection, const std::string& query) {
  auto rows = com::make<ado::Recordset>();
  rows->CursorLocation(ado::adUseClient);
  rows->Open(query, connection, ado::adOpenStatic, ado::adLockReadOnly);
  if (rows->State() != ado::adStateOpen)
    throw com::Error(com::error::kFailed, "Velmora",
                     "no recordset was answered to the query: " + query);
  return rows;
}

}  // namespace velmora::period
