#include "velmora/collections/letter_case.h"

#include <algorithm>

namespace velmora::collections {

std::string lowerCased(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = lowerCased(c);
  return lower;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return lowerCased(x) == lowerCased(y);
         });
}

}  // namespace velmora::collections
