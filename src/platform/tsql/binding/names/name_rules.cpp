#include "platform/tsql/binding/names/name_rules.h"

#include <algorithm>

namespace velmora::tsql {
namespace {

char lowerLetter(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

bool sameName(std::string_view a, std::string_view b) noexcept {
  return std::ranges::equal(a, b, {}, lowerLetter, lowerLetter);
}

bool IgnoreCase::operator()(std::string_view a, std::string_view b) const noexcept {
  return std::ranges::lexicographical_compare(a, b, {}, lowerLetter, lowerLetter);
}

}  // namespace velmora::tsql
