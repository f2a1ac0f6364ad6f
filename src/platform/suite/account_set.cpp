#include "platform/suite/account_set.h"

#include "velmora/ado/connection_string.h"
#include "velmora/com/error.h"

namespace velmora::suite {

ado::ConnectionRef openAccountSet(const std::string& callerString, const char* progId) {
  const auto settings = ado::ConnectionString(callerString).find("ConnectString");
  if (!settings)
    throw com::Error(com::error::kInvalidArgument, progId,
                     "The connection string has no ConnectString");
  auto connection = com::make<ado::Connection>();
  connection->CursorLocation(ado::adUseClient);
  connection->Open(*settings);
  return connection;
}

}  // namespace velmora::suite
