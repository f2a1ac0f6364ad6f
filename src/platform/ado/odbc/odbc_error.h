#pragma once

#include <span>
#include <sql.h>
#include <string>
#include <vector>

namespace velmora::ado::odbc {

/// Source of every error of the ODBC provider.
inline constexpr const char* kSource = "Velmora.ODBC";

/// One record of what a driver, the driver manager or the server said.
struct Diagnostic {
  std::string state;  ///< SQLSTATE, five characters
  long native = 0;    ///< the server's or the driver's own number
  std::string text;

  friend bool operator==(const Diagnostic&, const Diagnostic&) = default;
};

/// The records of a handle, each once: some drivers say everything twice. One that says
/// so when a driver fails without a reason.
std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT handleType, SQLHANDLE handle);

/// Whether a record says that the connection is gone.
bool isConnectionLost(std::span<const Diagnostic> diagnostics);

/// All records, one a line: "208: Invalid object name 't'. (SQLSTATE 42S02)".
std::string toText(std::span<const Diagnostic> diagnostics);

/// Raises all records as one error; its number is kProviderConnect when the connection is
/// gone, else kProvider.
[[noreturn]] void throwDiagnostics(std::span<const Diagnostic> diagnostics);

/// Raises the records of the handle unless `code` is a success.
void check(SQLRETURN code, SQLSMALLINT handleType, SQLHANDLE handle);

/// Raises com::error::kProvider with `message` as it is.
[[noreturn]] void throwError(std::string message);
/// Raises com::error::kProviderConnect.
[[noreturn]] void throwConnectError(std::string message);

}  // namespace velmora::ado::odbc
