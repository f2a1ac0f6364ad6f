#pragma once

#include <span>
#include <string_view>

namespace velmora {

/// A file compiled into the program.
struct EmbeddedText {
  std::string_view name;  ///< file name without folder
  std::string_view text;
  std::string_view sha256;  ///< of the text, in base64
};

}  // namespace velmora
