#include "platform/tsql/syntax/syntax_error.h"

namespace velmora::tsql {
namespace {

std::string describe(Position position, const std::string& problem) {
  return "line " + std::to_string(position.line) + ", column " + std::to_string(position.column) +
         ": " + problem;
}

}  // namespace

SyntaxError::SyntaxError(Position position, const std::string& problem)
    : com::Error(com::error::kProvider, "Velmora.Embedded", describe(position, problem)),
      position_(position) {}

}  // namespace velmora::tsql
