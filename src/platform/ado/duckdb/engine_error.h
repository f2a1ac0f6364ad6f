#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora::ado::embedded {

/// Source of every error of the embedded provider.
inline constexpr const char* kSource = "Velmora.Embedded";

/// What the engine said, as accountants and SQL Server users read it: SQL Server's number
/// and wording ("2627: Violation of ..."); nothing where there is none. Names of files are
/// left out, but for one that cannot be written.
std::optional<std::string> readableError(std::string_view engineMessage);

/// Raises com::error::kProvider with the readable form of the engine's message, or one of ours
/// for all that have none; the engine's words go to who wants to see them (ado/diagnostics.h).
[[noreturn]] void throwEngineError(std::string_view engineMessage);
/// Raises com::error::kProvider with `message` as it is.
[[noreturn]] void throwError(std::string message);
/// Raises com::error::kProviderConnect.
[[noreturn]] void throwConnectError(std::string message);

}  // namespace velmora::ado::embedded
