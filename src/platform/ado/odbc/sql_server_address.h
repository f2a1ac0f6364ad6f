#pragma once

#include <string>
#include <string_view>

namespace velmora::ado::odbc {

struct ServerAddress {
  std::string host;  ///< with "\instance" when the instance has to be asked for its port
  std::string port;  ///< decimal digits; empty: the driver's own choice
};

/// Reads the "Data Source" of a SQL Server: host, host,port or host\instance, optionally
/// behind "tcp:". A port makes the instance's name needless, so it is dropped then. Raises
/// kProviderConnect naming the text and what was expected.
ServerAddress readServerAddress(std::string_view dataSource);

}  // namespace velmora::ado::odbc
