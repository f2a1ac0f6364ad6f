#include "platform/tsql/binding/names/name_rules.h"

#include <algorithm>

#include "velmora/collections/letter_case.h"

namespace velmora::tsql {

bool sameName(std::string_view a, std::string_view b) noexcept {
  return collections::equalsIgnoringCase(a, b);
}

bool IgnoreCase::operator()(std::string_view a, std::string_view b) const noexcept {
  const auto lower = [](char c) { return collections::lowerCased(c); };
  return std::ranges::lexicographical_compare(a, b, {}, lower, lower);
}

}  // namespace velmora::tsql
