#pragma once

#include <optional>
#include <string>

#include "velmora/ado/connection.h"

namespace velmora::cli {

/// What the command line says of the account set to work on.
struct AccountSetOptions {
  std::string db;       ///< file of an embedded account set
  std::string dsn;      ///< connection string, or
  std::string dsnFile;  ///< the file that holds it
  bool receivables = true;
  std::string language;       ///< empty: not given
  std::optional<int> userId;  ///< whose row access applies
};

/// How an embedded account set is opened. A server has its own rights.
enum class Access {
  asGiven,  ///< as the connection string says, --db read-only
  read,
  write,
};

/// The sDsn for these options; VELMORA_DSN in the environment stands in when none of
/// db, dsn and dsnFile is given; empty when that is not set either. Raises Failure for
/// a file that cannot be read.
std::string dsnFor(const AccountSetOptions& options);

/// An account set in use: its sDsn and one open connection, held so that the calls of
/// a command share an embedded database that is opened once.
class Session {
 public:
  /// Raises UsageError when the options name no account set, else as
  /// Connection::Open.
  explicit Session(const AccountSetOptions& options, Access access = Access::asGiven);

  const std::string& dsn() const noexcept { return dsn_; }
  ado::Connection& connection() const noexcept { return *connection_; }
  /// "chs", "CHT" or "EN" as the component will read it from the sDsn.
  std::string language() const;

 private:
  std::string dsn_;
  ado::ConnectionRef connection_;
};

}  // namespace velmora::cli
