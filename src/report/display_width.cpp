#include "report/display_width.h"

#include <algorithm>
#include <array>

namespace velmora::report {

namespace {

struct Range {
  char32_t first, last;
};

// Wide and full-width characters of Unicode's East Asian Width property.
constexpr std::array kWide{
    Range{0x1100, 0x115F},   Range{0x231A, 0x231B},   Range{0x2329, 0x232A},
    Range{0x23E9, 0x23EC},   Range{0x25FD, 0x25FE},   Range{0x2614, 0x2615},
    Range{0x2648, 0x2653},   Range{0x26AA, 0x26AB},   Range{0x26BD, 0x26BE},
    Range{0x2705, 0x2705},   Range{0x274C, 0x274C},   Range{0x2753, 0x2755},
    Range{0x2795, 0x2797},   Range{0x2B1B, 0x2B1C},   Range{0x2E80, 0x303E},
    Range{0x3041, 0x33FF},   Range{0x3400, 0x4DBF},   Range{0x4E00, 0x9FFF},
    Range{0xA000, 0xA4CF},   Range{0xA960, 0xA97F},   Range{0xAC00, 0xD7A3},
    Range{0xF900, 0xFAFF},   Range{0xFE10, 0xFE19},   Range{0xFE30, 0xFE6F},
    Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},   Range{0x16FE0, 0x18DFF},
    Range{0x1AFF0, 0x1B2FF}, Range{0x1F300, 0x1F64F}, Range{0x1F680, 0x1F6FF},
    Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD}};

constexpr std::array kZero{Range{0x0300, 0x036F}, Range{0x0483, 0x0489}, Range{0x0591, 0x05BD},
                           Range{0x064B, 0x065F}, Range{0x0E34, 0x0E3A}, Range{0x0E47, 0x0E4E},
                           Range{0x1AB0, 0x1AFF}, Range{0x1DC0, 0x1DFF}, Range{0x200B, 0x200F},
                           Range{0x20D0, 0x20FF}, Range{0x302A, 0x302D}, Range{0x3099, 0x309A},
                           Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F}, Range{0xFEFF, 0xFEFF}};

template <std::size_t N>
bool contains(const std::array<Range, N>& ranges, char32_t c) {
  const auto after = std::upper_bound(ranges.begin(), ranges.end(), c,
                                      [](char32_t value, Range r) { return value < r.first; });
  return after != ranges.begin() && c <= std::prev(after)->last;
}

std::size_t widthOf(char32_t c) {
  if (c < 0x300) return 1;
  if (contains(kZero, c)) return 0;
  return contains(kWide, c) ? 2 : 1;
}

std::size_t sequenceLength(unsigned char lead) {
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  return 1;
}

/// The character at `position`, which moves behind it.
char32_t nextCharacter(std::string_view text, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position]);
  const std::size_t length = sequenceLength(lead);
  char32_t c = length == 1 ? lead : lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto next =
        position + i < text.size() ? static_cast<unsigned char>(text[position + i]) : 0U;
    if ((next & 0xC0U) != 0x80U) {
      ++position;
      return lead;
    }
    c = (c << 6U) | (next & 0x3FU);
  }
  position += length;
  return c;
}

}  // namespace

std::size_t displayWidth(std::string_view text) noexcept {
  std::size_t width = 0;
  for (std::size_t position = 0; position < text.size();)
    width += widthOf(nextCharacter(text, position));
  return width;
}

std::string singleLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (c == '\t' || c == '\n' || c == '\r') {
      c = ' ';
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      c = '?';
    }
  }
  return line;
}

}  // namespace velmora::report
