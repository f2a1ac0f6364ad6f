#include "platform/tsql/values/code_points.h"

namespace velmora::tsql::values {
namespace {

/// The bytes of the character that begins with `first`.
std::size_t lengthOf(char first) {
  const auto byte = static_cast<unsigned char>(first);
  if (byte < 0x80) return 1;
  if (byte < 0xE0) return 2;
  return byte < 0xF0 ? 3 : 4;
}

}  // namespace

std::u32string codePoints(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = lengthOf(text[at]);
    const auto first = static_cast<unsigned char>(text[at]);
    char32_t character = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length && at + i < text.size(); ++i)
      character = character << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
    characters += character;
    at += length;
  }
  return characters;
}

std::string utf8(std::u32string_view characters) {
  std::string text;
  text.reserve(characters.size());
  const auto follow = [&](char32_t bits) { text += static_cast<char>(0x80 | (bits & 0x3F)); };
  for (const char32_t c : characters) {
    if (c < 0x80) {
      text += static_cast<char>(c);
    } else if (c < 0x800) {
      text += static_cast<char>(0xC0 | c >> 6);
      follow(c);
    } else if (c < 0x10000) {
      text += static_cast<char>(0xE0 | c >> 12);
      follow(c >> 6);
      follow(c);
    } else {
      text += static_cast<char>(0xF0 | c >> 18);
      follow(c >> 12);
      follow(c >> 6);
      follow(c);
    }
  }
  return text;
}

std::size_t codePageBytes(std::string_view text) {
  std::size_t bytes = 0;
  for (std::size_t at = 0; at < text.size(); at += lengthOf(text[at]))
    bytes += lengthOf(text[at]) == 1 ? 1 : 2;
  return bytes;
}

std::string_view codePageStart(std::string_view text, std::size_t bytes) {
  std::size_t taken = 0;
  for (std::size_t at = 0; at < text.size(); at += lengthOf(text[at])) {
    taken += lengthOf(text[at]) == 1 ? 1 : 2;
    if (taken > bytes) return text.substr(0, at);
  }
  return text;
}

}  // namespace velmora::tsql::values
