#include <array>
#include <cctype>

#include "platform/tsql/engine/engine_functions.h"

namespace velmora::tsql {
namespace {

/// An error of the engine and SQL Server's number and sense for it.
struct KnownError {
  std::string_view engine;  // what the text contains
  std::string_view number;
};

constexpr auto kKnown = std::to_array<KnownError>({
    {"More than one row returned by a subquery", "512: Subquery returned more than 1 value."},
    {"Out of Range Error", "8115: Arithmetic overflow error."},
    {"out of range", "8115: Arithmetic overflow error."},
    {"Could not cast value", "8115: Arithmetic overflow error."},
    {"Could not convert string", "8114: Error converting data type."},
});

/// The first line, without the engine's kind of error before it.
std::string_view firstLine(std::string_view text) {
  text = text.substr(0, text.find('\n'));
  const auto colon = text.find("Error: ");
  return colon == std::string_view::npos ? text : text.substr(colon + 7);
}

bool beginsWithNumber(std::string_view text) {
  const auto colon = text.find(": ");
  if (colon == std::string_view::npos || colon == 0 || colon > 5) return false;
  for (const char c : text.substr(0, colon)) {
    if (std::isdigit(static_cast<unsigned char>(c)) == 0) return false;
  }
  return true;
}

}  // namespace

std::string sqlServerError(std::string_view engineMessage) {
  const std::string_view own = engineMessage.substr(
      engineMessage.starts_with("Invalid Input Error: ") ? sizeof("Invalid Input Error: ") - 1 : 0);
  if (beginsWithNumber(own) || own.starts_with("Not supported: ")) return std::string(own);
  for (const KnownError& known : kKnown) {
    if (engineMessage.find(known.engine) == std::string_view::npos) continue;
    return std::string(known.number) + " " + std::string(firstLine(engineMessage));
  }
  return std::string(engineMessage);
}

}  // namespace velmora::tsql
