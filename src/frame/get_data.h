#pragma once

#include <string>

#include "frame/call/call_setup.h"
#include "velmora/ado/recordset.h"

namespace velmora {

/// GetData of the public classes: runs `sSql` unchanged on a read-uncommitted
/// connection and answers its first result, disconnected. Votes SetComplete before
/// any work; errors pass to the caller.
ado::RecordsetRef getData(CallSetup& call, const std::string& sDsn, const std::string& sSql);

}  // namespace velmora
