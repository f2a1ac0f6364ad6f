#include "platform/ado/odbc/sql_server_address.h"

#include <algorithm>

#include "platform/ado/odbc/odbc_error.h"
#include "velmora/collections/letter_case.h"

namespace velmora::ado::odbc {

namespace {

using collections::lowerCased;

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isPort(std::string_view text) {
  return !text.empty() && text.size() <= 5 &&
         std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; }) &&
         std::stoi(std::string(text)) >= 1 && std::stoi(std::string(text)) <= 65535;
}

/// The names that a Windows client knows its own machine by.
std::string hostName(std::string_view host) {
  const std::string name = lowerCased(host);
  return name == "." || name == "(local)" ? "localhost" : std::string(host);
}

[[noreturn]] void refuse(std::string_view dataSource) {
  throwConnectError("Connection string: Data Source is \"" + std::string(dataSource) +
                    "\"; expected host, host,port (1 to 65535) or host\\instance.");
}

}  // namespace

ServerAddress readServerAddress(std::string_view dataSource) {
  std::string_view rest = trimmed(dataSource);
  if (lowerCased(rest).starts_with("tcp:")) rest = trimmed(rest.substr(4));
  const auto comma = rest.find(',');
  const auto port = comma == std::string_view::npos ? "" : trimmed(rest.substr(comma + 1));
  if (comma != std::string_view::npos && !isPort(port)) refuse(dataSource);
  rest = trimmed(rest.substr(0, comma));
  const auto slash = rest.find('\\');
  const auto instance = slash == std::string_view::npos ? "" : trimmed(rest.substr(slash + 1));
  const auto host = trimmed(rest.substr(0, slash));
  // One colon is another protocol's ("np:", "lpc:"); an IPv6 address has more.
  if (host.empty() || std::ranges::count(host, ':') == 1 ||
      (slash != std::string_view::npos && instance.empty()))
    refuse(dataSource);
  if (!port.empty() || instance.empty()) return {hostName(host), std::string(port)};
  return {hostName(host) + "\\" + std::string(instance), {}};
}

}  // namespace velmora::ado::odbc
