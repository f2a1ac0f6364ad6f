#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace velmora::cli {

inline char lowerCased(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerCased(x) == lowerCased(y); });
}

}  // namespace velmora::cli
