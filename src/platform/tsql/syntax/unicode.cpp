#include "platform/tsql/syntax/unicode.h"

#include <algorithm>
#include <array>

namespace velmora::tsql {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

constexpr auto kBlanks = std::to_array<Range>({{0xA0, 0xA0},
                                               {0x2000, 0x200B},
                                               {0x2028, 0x2029},
                                               {0x202F, 0x202F},
                                               {0x205F, 0x205F},
                                               {0x3000, 0x3000},
                                               {0xFEFF, 0xFEFF}});

constexpr auto kNoNameLetters = std::to_array<Range>({{0x00, 0xA9},      // ASCII, controls, signs
                                                      {0xAB, 0xB4},      // Latin signs
                                                      {0xB6, 0xB9},      //
                                                      {0xBB, 0xBF},      //
                                                      {0xD7, 0xD7},      // multiplication sign
                                                      {0xF7, 0xF7},      // division sign
                                                      {0x2000, 0x206F},  // general punctuation
                                                      {0x2190, 0x2BFF},  // arrows, symbols
                                                      {0x3000, 0x3004},  // East Asian punctuation
                                                      {0x3008, 0x3020},  //
                                                      {0xFE10, 0xFE6F},  // vertical, small forms
                                                      {0xFEFF, 0xFEFF},  //
                                                      {0xFF00, 0xFF0F},  // full-width signs
                                                      {0xFF1A, 0xFF20},  //
                                                      {0xFF3B, 0xFF40},  //
                                                      {0xFF5B, 0xFF65},  //
                                                      {0xFFE0, 0xFFFF},  //
                                                      {0x110000, kInvalidCodePoint}});

template <std::size_t Size>
bool within(const std::array<Range, Size>& ranges, char32_t point) {
  return std::any_of(ranges.begin(), ranges.end(), [point](const Range& range) {
    return point >= range.first && point <= range.last;
  });
}

std::size_t encodedSize(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

}  // namespace

CodePoint decode(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t size = encodedSize(lead);
  if (size == 1) return {lead, 1};
  if (size == 0 || at + size > text.size()) return {kInvalidCodePoint, 1};
  char32_t value = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    const char c = text[at + i];
    if (!isContinuationByte(c)) return {kInvalidCodePoint, 1};
    value = (value << 6) | (static_cast<unsigned char>(c) & 0x3FU);
  }
  return {value, size};
}

bool isBlank(char32_t point) {
  return within(kBlanks, point);
}

bool isNameLetter(char32_t point) {
  return !within(kNoNameLetters, point);
}

}  // namespace velmora::tsql
