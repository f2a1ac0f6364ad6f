#include "platform/suite/account_set.h"

#include "platform/suite/caller_string.h"
#include "velmora/com/error.h"

namespace velmora::suite {

ado::ConnectionRef openAccountSet(const std::string& callerString, const char* progId) {
  const auto properties = callerProperties(callerString);
  if (!properties->Lookup("ConnectString"))
    throw com::Error(com::error::kInvalidArgument, progId,
                     "The connection string has no ConnectString");
  auto connection = com::make<ado::Connection>();
  connection->CursorLocation(ado::adUseClient);
  connection->Open(properties->Value("ConnectString").toText());
  return connection;
}

}  // namespace velmora::suite
