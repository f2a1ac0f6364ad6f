#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

/// The suite's connection string (sDsn) taken apart: "key=value" pairs separated by
/// ";", values optionally in braces, which have no escape for "}"; keys ignore
/// letter case.
class CallerString {
 public:
  CallerString() = default;
  /// Raises Failure naming a key that occurs twice.
  explicit CallerString(std::string_view text);

  /// Whether `text` is of this form: it has the key ConnectString.
  static bool describes(std::string_view text);

  std::optional<std::string> find(std::string_view key) const;
  /// Replaces or appends. Raises Failure for a value with "}", which the string cannot
  /// hold.
  void set(std::string_view key, std::string_view value);
  std::string toString() const;

 private:
  struct Pair {
    std::string key, value;
  };
  static std::vector<Pair> parse(std::string_view text);
  Pair* findPair(std::string_view key);

  std::vector<Pair> pairs_;
};

/// What the component is told of its caller besides the database.
struct CallerContext {
  bool receivables = true;
  std::string language;  ///< "chs", "CHT" or "EN"; empty: as the text says, else "chs"
  std::string user;
};

/// The sDsn around an ADO connection string.
std::string wrapConnectString(std::string_view connectString, const CallerContext& context);

/// The sDsn for what a person gave: a whole caller string (with ConnectString=) goes
/// through as it is but for a language asked for; an ADO connection string (with
/// Provider=, Driver= or DSN=) is wrapped. Raises Failure for anything else.
std::string callerStringFor(std::string_view text, const CallerContext& context);

/// The ADO connection string to an embedded database. `mode` is "Read", "ReadWrite"
/// or "Create".
std::string embeddedConnectString(std::string_view file, std::string_view mode);

/// The ADO connection string inside an sDsn. Raises Failure when there is none.
std::string connectStringOf(std::string_view dsn);

}  // namespace velmora::cli
