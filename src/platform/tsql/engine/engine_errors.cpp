#include <array>
#include <cctype>

#include "platform/tsql/engine/engine_functions.h"

namespace velmora::tsql {
namespace {

constexpr auto npos = std::string_view::npos;

/// An error of the engine and SQL Server's number and sense for it.
struct KnownError {
  std::string_view engine;  // what the text contains
  std::string_view answer;
};

constexpr auto kKnown = std::to_array<KnownError>({
    {"More than one row returned by a subquery",
     "512: Subquery returned more than 1 value. This is not permitted when the subquery is used as "
     "an expression or follows a comparison."},
    {"Max expression depth", "191: This statement is too deep; break it up into smaller ones."},
    {"non-inner join on subquery", "Not supported: a subquery in the ON of this outer join"},
    {"square root of a negative number", "3623: An invalid floating point operation occurred."},
    {"logarithm of", "3623: An invalid floating point operation occurred."},
    {"CHECK constraint failed", "547: The statement conflicted with a CHECK constraint."},
    {"Data contains duplicates on indexed column",
     "1505: The unique index cannot be created: there are duplicate keys."},
    {"Could not convert string", "8114: Error converting data type."},
    {"timestamp field value", "241: Conversion failed when converting date and/or time."},
    {"date field value", "241: Conversion failed when converting date and/or time."},
    {"Corrupt", "824: The database file is damaged."},
    {"checksum", "824: The database file is damaged."},
});

/// What the engine says of a number that its type has no room for.
constexpr auto kOverflows =
    std::to_array<std::string_view>({"Out of Range Error", "out of range", "Could not cast value",
                                     "can't be cast", "Failed to cast decimal", "Overflow in"});

struct TypeName {
  std::string_view engine;
  std::string_view server;
};

constexpr auto kTypes = std::to_array<TypeName>({{"UINT8", "tinyint"},
                                                 {"INT16", "smallint"},
                                                 {"INT32", "int"},
                                                 {"INT64", "bigint"},
                                                 {"DECIMAL", "numeric"},
                                                 {"INT128", "numeric"},
                                                 {"HUGEINT", "numeric"},
                                                 {"TIMESTAMP", "datetime"},
                                                 {"DATE", "datetime"},
                                                 {"FLOAT", "real"},
                                                 {"DOUBLE", "float"}});

/// The type that had no room: the one named last.
std::string overflow(std::string_view engineMessage) {
  std::string_view type;
  std::size_t last = 0;
  for (const TypeName& name : kTypes) {
    const auto at = engineMessage.rfind(name.engine);
    if (at == npos || (!type.empty() && at <= last)) continue;
    last = at;
    type = name.server;
  }
  if (type.empty()) return "8115: Arithmetic overflow error.";
  return "8115: Arithmetic overflow error converting expression to data type " + std::string(type) +
         ".";
}

bool beginsWithNumber(std::string_view text) {
  const auto colon = text.find(": ");
  if (colon == npos || colon == 0 || colon > 5) return false;
  for (const char c : text.substr(0, colon)) {
    if (std::isdigit(static_cast<unsigned char>(c)) == 0) return false;
  }
  return true;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != npos;
}

}  // namespace

std::optional<std::string> sqlServerError(std::string_view engineMessage) {
  constexpr std::string_view raised = "Invalid Input Error: ";
  const std::string_view own =
      engineMessage.substr(engineMessage.starts_with(raised) ? raised.size() : 0);
  if (beginsWithNumber(own) || own.starts_with("Not supported: ")) return std::string(own);
  for (const KnownError& known : kKnown) {
    if (contains(engineMessage, known.engine)) return std::string(known.answer);
  }
  for (const std::string_view part : kOverflows) {
    if (contains(engineMessage, part)) return overflow(engineMessage);
  }
  return std::nullopt;
}

}  // namespace velmora::tsql
