#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora::cli {

/// The suite's connection string (sDsn), to be changed and written again.
class CallerString {
 public:
  CallerString();
  /// Raises kDuplicateKey naming a key that occurs twice.
  explicit CallerString(std::string_view text);

  /// Whether `text` is of this form: it has the key ConnectString.
  static bool describes(std::string_view text);

  std::optional<std::string> find(std::string_view key) const;
  /// Replaces or appends. Raises Failure for a value with "}", which the string cannot
  /// hold.
  void set(std::string_view key, std::string_view value);
  std::string toString() const;

 private:
  collections::DictionaryRef properties_;
};

/// What the component is told of its caller besides the database.
struct CallerContext {
  bool receivables = true;
  std::string language;  ///< "chs", "CHT" or "EN"; empty: as the text says, else "chs"
  std::string user;
  std::optional<int> userId = {};  ///< whose row access applies; absent: as the text says
};

/// The sDsn around an ADO connection string.
std::string wrapConnectString(std::string_view connectString, const CallerContext& context);

/// The sDsn for what a person gave: a whole caller string (with ConnectString=) goes
/// through as it is but for language and user asked for; an ADO connection string (with
/// Provider=, Driver= or DSN=) is wrapped. Raises Failure for anything else, and for a
/// caller string that speaks of a UserID where none is read: it would go unnoticed that
/// another user's row access applies. kDuplicateKey names a key that occurs twice.
std::string callerStringFor(std::string_view text, const CallerContext& context);

/// The ADO connection string to an embedded database. `mode` is "Read", "ReadWrite"
/// or "Create".
std::string embeddedConnectString(std::string_view file, std::string_view mode);

/// The ADO connection string inside an sDsn. Raises Failure when there is none.
std::string connectStringOf(std::string_view dsn);

}  // namespace velmora::cli
