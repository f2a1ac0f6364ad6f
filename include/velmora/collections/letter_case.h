#pragma once

#include <string>
#include <string_view>

namespace velmora::collections {

// Names and keys of the suite are matched without regard to the case of the
// letters A to Z; all other characters must be the same.

constexpr char lowerCased(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowerCased(std::string_view text);

bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept;

}  // namespace velmora::collections
