#include "platform/ado/odbc/driver_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "platform/ado/odbc/odbc_error.h"
#include "platform/ado/odbc/sql_server_address.h"
#include "velmora/collections/letter_case.h"

namespace velmora::ado::odbc {

namespace {

using collections::equalsIgnoringCase;
using collections::lowerCased;
using Property = ConnectionString::Property;

/// One attribute in the driver manager's form, where only braces quote.
void append(std::string& text, std::string_view name, std::string_view value) {
  const bool plain = value.find_first_of(";{}[]()?*!@=") == std::string_view::npos &&
                     !value.starts_with(' ') && !value.ends_with(' ');
  text.append(name).append("=");
  if (plain && !equalsIgnoringCase(name, "Driver")) {
    text.append(value).append(";");
    return;
  }
  text += '{';
  for (const char c : value) text.append(c == '}' ? 2 : 1, c);
  text += "};";
}

[[noreturn]] void refuse(const Property& property, std::string_view expected) {
  throwConnectError("Connection string: \"" + property.name + "\" is \"" + property.value +
                    "\"; expected " + std::string(expected) + ".");
}

int readSeconds(const Property& property) {
  int seconds = 0;
  const char* end = property.value.data() + property.value.size();
  const auto [stop, error] = std::from_chars(property.value.data(), end, seconds);
  if (error != std::errc() || stop != end || seconds < 0)
    refuse(property, "a whole number of seconds, 0 for no limit");
  return seconds;
}

bool readSwitch(const Property& property) {
  const std::string value = lowerCased(property.value);
  for (const std::string_view yes : {"true", "yes", "1", "sspi", "mandatory", "strict"})
    if (value == yes) return true;
  for (const std::string_view no : {"false", "no", "0", "optional", ""})
    if (value == no) return false;
  refuse(property, "yes or no");
}

bool isTimeout(const std::string& name) {
  return name == "connect timeout" || name == "connection timeout";
}

struct Translation {
  std::string_view ado;
  std::string_view driver;  ///< empty: has no meaning here and is left out
};

std::optional<std::string_view> translated(std::span<const Translation> table,
                                           std::string_view name) {
  const auto found = std::ranges::find(table, name, &Translation::ado);
  if (found == table.end()) return std::nullopt;
  return found->driver;
}

constexpr std::array kSqlServerNames{
    Translation{"initial catalog", "Database"},
    Translation{"database", "Database"},
    Translation{"user id", "UID"},
    Translation{"uid", "UID"},
    Translation{"password", "PWD"},
    Translation{"pwd", "PWD"},
    Translation{"application name", "APP"},
    Translation{"app", "APP"},
    Translation{"workstation id", "WSID"},
    Translation{"wsid", "WSID"},
    Translation{"current language", "Language"},
    Translation{"language", "Language"},
    Translation{"application intent", "ApplicationIntent"},
    Translation{"applicationintent", "ApplicationIntent"},
    Translation{"packet size", "PacketSize"},
    Translation{"provider", ""},
    Translation{"persist security info", ""},
    Translation{"network library", ""},
    Translation{"auto translate", ""},
    Translation{"use procedure for prepare", ""},
    Translation{"tag with column collation when possible", ""},
    Translation{"datatypecompatibility", ""},
    Translation{"mars connection", ""},
    Translation{"marsconn", ""},
    Translation{"multisubnetfailover", ""},
    Translation{"trust server certificate", ""},
    Translation{"trustservercertificate", ""},
    Translation{"general timeout", ""},
};

/// FreeTDS's attributes for a SQL Server, collected from one property after the other.
class SqlServerAttributes {
 public:
  void add(const Property& property) {
    const std::string name = lowerCased(property.name);
    if (isTimeout(name))
      result_.loginTimeout = readSeconds(property);
    else if (name == "data source" || name == "server" || name == "address")
      server_ = readServerAddress(property.value);
    else if (name == "integrated security" || name == "trusted_connection")
      refuseWindowsLogin(property);
    else if (name == "use encryption for data" || name == "encrypt")
      encrypt_ = readSwitch(property);
    else if (const auto known = translated(kSqlServerNames, name))
      addAttribute(*known, property.value);
    else
      throwConnectError("Connection string: \"" + property.name +
                        "\" is not known for SQL Server; it takes Data Source, Initial Catalog, "
                        "User ID, Password, Connect Timeout, Application Name, Workstation ID, "
                        "Current Language, Application Intent, Encrypt and Packet Size.");
  }

  DriverString finish() {
    if (!server_)
      throwConnectError(
          "Connection string: Data Source is missing; it names the server (host, host,port or "
          "host\\instance).");
    if (!hasUser_)
      throwConnectError(
          "Connection string: User ID is missing; a SQL Server login is needed, with its "
          "Password.");
    append(result_.text, "Driver", "FreeTDS");
    append(result_.text, "Server", server_->host);
    if (!server_->port.empty()) append(result_.text, "Port", server_->port);
    append(result_.text, "ClientCharset", "UTF-8");
    if (encrypt_) append(result_.text, "Encryption", "require");
    result_.text += attributes_;
    return std::move(result_);
  }

 private:
  static void refuseWindowsLogin(const Property& property) {
    if (readSwitch(property))
      refuse(property,
             "a SQL Server login (User ID and Password): this machine's processes have no "
             "Windows identity that the server could take over");
  }

  void addAttribute(std::string_view name, const std::string& value) {
    if (name.empty() || value.empty()) return;
    append(attributes_, name, value);
    if (name == "UID") hasUser_ = true;
  }

  DriverString result_;
  std::optional<ServerAddress> server_;
  std::string attributes_;
  bool encrypt_ = false;
  bool hasUser_ = false;
};

constexpr std::array kOdbcNames{
    Translation{"data source", "DSN"}, Translation{"user id", "UID"},
    Translation{"password", "PWD"},    Translation{"initial catalog", "Database"},
    Translation{"provider", ""},       Translation{"persist security info", ""},
};

void passOn(DriverString& result, const ConnectionString& settings) {
  for (const Property& property : settings.properties()) {
    const std::string name = lowerCased(property.name);
    if (isTimeout(name))
      result.loginTimeout = readSeconds(property);
    else if (name == "extended properties")
      passOn(result, ConnectionString(property.value));
    else if (const auto known = translated(kOdbcNames, name); !known)
      append(result.text, property.name, property.value);
    else if (!known->empty())
      append(result.text, *known, property.value);
  }
}

bool isForSqlServer(const ConnectionString& settings) {
  const std::string provider = lowerCased(settings.value("Provider"));
  return std::ranges::any_of(std::array<std::string_view, 3>{"sqloledb", "sqlncli", "msoledbsql"},
                             [&](std::string_view family) { return provider.starts_with(family); });
}

}  // namespace

DriverString driverString(const ConnectionString& settings) {
  if (isForSqlServer(settings)) {
    SqlServerAttributes attributes;
    for (const Property& property : settings.properties()) attributes.add(property);
    return attributes.finish();
  }
  DriverString result;
  passOn(result, settings);
  const ConnectionString names(result.text);
  if (!names.find("Driver") && !names.find("DSN") && !names.find("FileDSN"))
    throwConnectError(
        "Connection string: it names neither a driver nor a data source; expected Driver={...} or "
        "DSN=...");
  return result;
}

}  // namespace velmora::ado::odbc
