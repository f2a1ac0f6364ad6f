#pragma once

#include <string>
#include <string_view>

namespace velmora::cli::demo {

/// "XSFP", 7 → "XSFP000007"; numbers beyond six digits are written in full.
inline std::string numbered(std::string_view prefix, int number) {
  const std::string digits = std::to_string(number);
  std::string text(prefix);
  if (digits.size() < 6) text.append(6 - digits.size(), '0');
  return text += digits;
}

}  // namespace velmora::cli::demo
