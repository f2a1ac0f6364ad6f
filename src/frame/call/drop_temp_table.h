#pragma once

#include <string_view>

#include "velmora/ado/connection.h"

namespace velmora {

/// Drops a work table of `connection`; one that does not exist is fine, and so is
/// any other failure. The thread's error information stays as it was.
void DropTempTable(ado::Connection& connection, std::string_view table) noexcept;

}  // namespace velmora
