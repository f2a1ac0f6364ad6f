#pragma once

#include <string>

#include "velmora/ado/connection_string.h"

namespace velmora::ado::odbc {

/// How to reach a data source through the driver manager.
struct DriverString {
  std::string text;       ///< "Name=Value;..." with values in braces where needed
  int loginTimeout = 15;  ///< seconds, 0 without limit
};

/// What an ADO connection string asks for.
///
/// Provider SQLOLEDB, SQLNCLI... and MSOLEDBSQL... become attributes of the FreeTDS driver:
/// Data Source (host; host,port; host\instance; "." and "(local)" are this machine), Initial
/// Catalog, User ID, Password, Application Name, Workstation ID, Current Language,
/// Application Intent, Encrypt, Packet Size. What only concerns a Windows client is left
/// out; what nobody knows is refused, and so is Integrated Security.
///
/// Anything else (MSDASQL, Driver=, DSN=) goes to the driver manager as it is, but for
/// MSDASQL's own names: Data Source (DSN), User ID, Password, Initial Catalog, Extended
/// Properties.
///
/// "Connect Timeout" is the login's limit in either form. Raises kProviderConnect naming the
/// property and what was expected; never a password.
DriverString driverString(const ConnectionString& settings);

}  // namespace velmora::ado::odbc
