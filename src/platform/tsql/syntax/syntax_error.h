#pragma once

#include <string>

#include "platform/tsql/syntax/position.h"
#include "velmora/com/error.h"

namespace velmora::tsql {

/// A batch that cannot be parsed: com::error::kProvider, source "Velmora.Embedded", the text
/// "line 3, column 14: " and what is wrong there.
class SyntaxError : public com::Error {
 public:
  SyntaxError(Position position, const std::string& problem);

  Position position() const noexcept { return position_; }

 private:
  Position position_;
};

}  // namespace velmora::tsql
