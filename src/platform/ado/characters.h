#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace velmora::ado {

/// Characters (code points) of a UTF-8 text; column sizes and positions count in them.
inline std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace velmora::ado
