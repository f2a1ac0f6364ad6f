#include "frame/get_data.h"

#include "velmora/com/context.h"
#include "velmora/com/error.h"

namespace velmora {

ado::RecordsetRef getData(CallSetup& call, const std::string& sDsn, const std::string& sSql) {
  com::ClearErrorInfo();
  com::GetObjectContext().SetComplete();
  call.PrepareDataSource(sDsn);
  const auto connection = call.dataSource().UnCommittedConnection();
  connection->Execute("set nocount on ");
  auto rows = connection->Execute(sSql);
  rows->ActiveConnection(nullptr);
  return rows;
}

}  // namespace velmora
