#pragma once

#include <string>
#include <string_view>

#include "platform/tsql/syntax/position.h"
#include "velmora/com/error.h"

namespace velmora::tsql {

inline constexpr std::string_view kErrorSource = "Velmora.Embedded";

/// Raises com::Error kProvider with SQL Server's number, for instance
/// "208: Invalid object name 't_x' (line 1, column 15)".
[[noreturn]] void raiseAt(Position position, int number, std::string_view message);

/// Raises that `construct` is beyond what the front end knows, naming the place.
[[noreturn]] void refuse(Position position, std::string_view construct);

/// Raises 191, for an expression that would become more than the engine can take.
[[noreturn]] void refuseDepth(Position position);

}  // namespace velmora::tsql
