#include "frame/call/text.h"

#include <algorithm>

namespace velmora {

std::string upperCased(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return upper;
}

std::string_view trimmed(std::string_view text) noexcept {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view cutAt(std::string_view& rest, char delimiter) noexcept {
  const auto end = std::min(rest.find(delimiter), rest.size());
  const std::string_view piece = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return piece;
}

std::string_view firstCharacters(std::string_view text, std::size_t size) noexcept {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool continues = (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    if (!continues && characters++ == size) return text.substr(0, i);
  }
  return text;
}

}  // namespace velmora
