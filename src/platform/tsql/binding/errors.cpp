#include "platform/tsql/binding/errors.h"

namespace velmora::tsql {
namespace {

[[noreturn]] void raise(Position position, std::string text) {
  text += " (line " + std::to_string(position.line) + ", column " +
          std::to_string(position.column) + ")";
  throw com::Error(com::error::kProvider, std::string(kErrorSource), std::move(text));
}

}  // namespace

void raiseAt(Position position, int number, std::string_view message) {
  raise(position, std::to_string(number) + ": " + std::string(message));
}

void refuse(Position position, std::string_view construct) {
  raise(position, "Not supported: " + std::string(construct));
}

void refuseDepth(Position position) {
  raiseAt(position, 191, "This statement is too deep; break it up into smaller ones.");
}

}  // namespace velmora::tsql
