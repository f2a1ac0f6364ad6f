#pragma once

#include <string>
#include <string_view>

namespace velmora::cli {

/// "1 row", "2 rows": `noun` with an "s" unless there is one.
template <class Count>
std::string counted(Count count, std::string_view noun) {
  std::string text = std::to_string(count) + " ";
  text.append(noun);
  return count == 1 ? text : text + "s";
}

}  // namespace velmora::cli
