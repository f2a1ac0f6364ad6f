#include "platform/ado/duckdb/engine_error.h"

#include <array>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/tsql/engine/engine_functions.h"
#include "velmora/ado/diagnostics.h"
#include "velmora/com/error.h"

namespace velmora::ado::embedded {

namespace {

constexpr auto npos = std::string_view::npos;

/// The text between `before` and the next `after`; nullopt when they are not there.
std::optional<std::string> between(std::string_view text, std::string_view before,
                                   std::string_view after) {
  const auto start = text.find(before);
  if (start == npos) return std::nullopt;
  const auto from = start + before.size();
  const auto end = text.find(after, from);
  if (end == npos) return std::nullopt;
  return std::string(text.substr(from, end - from));
}

/// "515: ..." for `NOT NULL constraint failed: t.FID`.
std::optional<std::string> notNullViolation(std::string_view message) {
  constexpr std::string_view mark = "NOT NULL constraint failed: ";
  const auto start = message.find(mark);
  if (start == npos) return std::nullopt;
  const auto place = message.substr(start + mark.size());
  const auto point = place.rfind('.');
  if (point == npos) return std::nullopt;
  return "515: Cannot insert the value NULL into column '" + std::string(place.substr(point + 1)) +
         "', table '" + std::string(place.substr(0, point)) + "'; the column does not allow nulls.";
}

/// "2627: ..." for the engine's two wordings of a duplicate key.
std::optional<std::string> duplicateKey(std::string_view message) {
  auto key = between(message, "Duplicate key \"", "\" violates");
  if (!key) key = between(message, "violation: duplicate key \"", "\"");
  if (!key) return std::nullopt;
  const std::string text =
      "2627: Violation of a primary key or unique constraint. Cannot insert duplicate key";
  // The key of an index is told as the engine's expression.
  const bool plain = key->find('(') == std::string::npos && !key->ends_with(", false") &&
                     !key->ends_with(", true");
  return plain ? text + "; the duplicate key value is (" + *key + ")." : text + ".";
}

/// "1105: ..." for what cannot be written. Here the file is named: somebody has to make room
/// where it lies.
std::optional<std::string> unwritable(std::string_view message) {
  constexpr std::string_view full = "the disk is full.";
  if (message.find("failed to offload data block") != npos) {
    std::error_code ignored;
    return "1105: Cannot write to the temporary folder \"" +
           std::filesystem::temp_directory_path(ignored).string() + "\": " + std::string(full);
  }
  const auto file = between(message, "Could not write file \"", "\": ");
  if (!file) return std::nullopt;
  const auto reason = message.substr(message.rfind("\": ") + 3);
  const bool isFull = reason.starts_with("No space left") || reason.starts_with("Disk quota");
  return "1105: Cannot write the file \"" + *file + "\": " + std::string(isFull ? full : reason);
}

std::optional<std::string> knownError(std::string_view message) {
  struct Known {
    std::string_view engine;
    std::string_view answer;
  };
  static constexpr std::array known{
      Known{
          "Data contains duplicates on indexed column",
          "1505: The CREATE UNIQUE INDEX statement terminated because a duplicate key was found."},
      Known{"CHECK constraint failed",
            "547: The statement conflicted with a CHECK constraint of the table."},
      Known{"attached in read-only mode",
            "3906: Failed to update the database because it is open for reading only."},
      Known{"Out of Memory Error", "701: There is not enough memory to run this query."},
      Known{"Conflict on update",
            "1205: Another connection has changed the same rows; run it again."},
      Known{"Conflict on tuple",
            "1205: Another connection has changed the same rows; run it again."},
      Known{"write-write conflict",
            "1205: Another connection has changed the same table; run it again."},
  };
  if (auto text = unwritable(message)) return text;
  for (const auto& [engine, answer] : known)
    if (message.find(engine) != npos) return std::string(answer);
  if (auto text = notNullViolation(message)) return text;
  return duplicateKey(message);
}

}  // namespace

std::optional<std::string> readableError(std::string_view engineMessage) {
  const auto firstLine = engineMessage.substr(0, engineMessage.find('\n'));
  if (auto known = knownError(firstLine)) return known;
  return tsql::sqlServerError(firstLine);
}

void throwEngineError(std::string_view engineMessage) {
  tellEngineWords(engineMessage);
  throwError(
      readableError(engineMessage).value_or("The database engine could not run this statement."));
}

void throwError(std::string message) {
  throw com::Error(com::error::kProvider, kSource, std::move(message));
}

void throwConnectError(std::string message) {
  throw com::Error(com::error::kProviderConnect, kSource, std::move(message));
}

}  // namespace velmora::ado::embedded
