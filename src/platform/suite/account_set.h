#pragma once

#include <string>

#include "velmora/ado/connection.h"

namespace velmora::suite {

/// An open connection to the database that `callerString`, the caller's whole string,
/// names under ConnectString. Raises kInvalidArgument with source `progId` when it names
/// none, kDuplicateKey when a key occurs twice, else the provider's error.
ado::ConnectionRef openAccountSet(const std::string& callerString, const char* progId);

}  // namespace velmora::suite
