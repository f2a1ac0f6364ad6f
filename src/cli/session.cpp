#include "cli/session.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/caller_string.h"
#include "cli/failure.h"
#include "velmora/ado/connection_string.h"
#include "velmora/collections/letter_case.h"

namespace velmora::cli {

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

/// The log-in name, for the suite's record of who asks.
std::string userName() {
  const std::string user = environment("USER");
  return user.find_first_of(";{}=") == std::string::npos ? user : std::string();
}

std::string readDsnFile(const std::string& file) {
  std::ifstream in(file);
  std::ostringstream text;
  if (!in || !(text << in.rdbuf())) throw Failure("cannot read a connection string from " + file);
  std::string dsn = text.str();
  const char* blanks = " \t\r\n";
  dsn.erase(0, dsn.find_first_not_of(blanks));
  dsn.erase(dsn.find_last_not_of(blanks) + 1);
  return dsn;
}

void requireFile(const std::string& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored))
    throw Failure(file + " is a folder, not an account set");
  if (!std::filesystem::exists(file, ignored))
    throw Failure("there is no file " + file + "; `velmora demo create " + file +
                  "` makes a demonstration account set");
}

/// `connectString` with the access wanted when it is an embedded database.
std::string withAccess(const std::string& connectString, Access access) {
  if (access == Access::asGiven) return connectString;
  ado::ConnectionString settings(connectString);
  if (!collections::equalsIgnoringCase(settings.value("Provider"), "Velmora.Embedded"))
    return connectString;
  const bool create = collections::equalsIgnoringCase(settings.value("Mode"), "Create");
  if (access == Access::write && create) return connectString;
  settings.set("Mode", access == Access::write ? "ReadWrite" : "Read");
  return settings.toString();
}

/// The connection string given otherwise than by --db.
std::string givenDsn(const AccountSetOptions& options) {
  if (!options.dsn.empty()) return options.dsn;
  if (!options.dsnFile.empty()) return readDsnFile(options.dsnFile);
  return environment("VELMORA_DSN");
}

ado::ConnectionRef openConnection(const std::string& connectString) {
  auto connection = com::make<ado::Connection>();
  connection->CursorLocation(ado::adUseClient);
  connection->CommandTimeout(0);
  connection->Open(connectString);
  return connection;
}

}  // namespace

std::string dsnFor(const AccountSetOptions& options) {
  const CallerContext context{options.receivables, options.language, userName(), options.userId};
  if (!options.db.empty()) {
    requireFile(options.db);
    return wrapConnectString(embeddedConnectString(options.db, "Read"), context);
  }
  const std::string given = givenDsn(options);
  return given.empty() ? given : callerStringFor(given, context);
}

Session::Session(const AccountSetOptions& options, Access access) : dsn_(dsnFor(options)) {
  if (dsn_.empty())
    throw UsageError(
        "say which account set: --db FILE, --dsn TEXT, --dsn-file FILE or VELMORA_DSN");
  connection_ = openConnection(withAccess(connectStringOf(dsn_), access));
}

std::string Session::language() const {
  return CallerString(dsn_).find("LANGUAGE").value_or("chs");
}

}  // namespace velmora::cli
