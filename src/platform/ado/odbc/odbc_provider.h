#pragma once

#include <memory>

#include "velmora/ado/provider.h"

namespace velmora::ado::odbc {

/// Opens a connection through the ODBC driver manager; for the connection string see
/// driver_string.h. Batches are the server's own language and commit statement by
/// statement. Connections are not pooled here, so a lost one is the concern of the call
/// that has it and of no other.
std::unique_ptr<ProviderConnection> openConnection(const ConnectionString& settings);

/// Makes it known as "MSDASQL", the name that SQL Server's own providers go to as well.
void registerProvider();

}  // namespace velmora::ado::odbc
