#pragma once

#include <cstddef>
#include <string_view>

namespace velmora::tsql {

struct CodePoint {
  char32_t value;
  std::size_t size;  // bytes
};

/// The value that `decode` gives for bytes that are no UTF-8; it takes one byte.
inline constexpr char32_t kInvalidCodePoint = 0xFFFFFFFF;

/// The character at byte `at`, which must lie within the text.
CodePoint decode(std::string_view text, std::size_t at);

constexpr bool isContinuationByte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Blanks beyond ASCII: no-break space, ideographic space, byte order mark and their like.
bool isBlank(char32_t point);

/// Characters beyond ASCII that a plain name may hold: all but blanks and the punctuation of
/// general and East Asian text, so that a full-width comma is reported and not taken as a name.
bool isNameLetter(char32_t point);

}  // namespace velmora::tsql
