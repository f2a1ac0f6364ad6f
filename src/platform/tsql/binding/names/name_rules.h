#pragma once

#include <string_view>

namespace velmora::tsql {

/// Names are the same without regard to case.
bool sameName(std::string_view a, std::string_view b) noexcept;

/// The order of names in a map.
struct IgnoreCase {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept;
};

}  // namespace velmora::tsql
