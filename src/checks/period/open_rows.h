#pragma once

#include <string>

#include "velmora/ado/connection.h"

namespace velmora::period {

/// What `query` answers, as a recordset of its own: client-side, static, read-only.
/// Raises the provider's error, kFailed when the query answers no rowset.
ado::RecordsetRef openRows(const ado::ConnectionRef& connection, const std::string& query);

}  // namespace velmora::period
