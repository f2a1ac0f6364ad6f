#include "platform/ado/odbc/wide_text.h"

#include "platform/ado/odbc/odbc_error.h"

namespace velmora::ado::odbc {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kNone = 0xFFFFFFFF;

constexpr bool isSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

struct Lead {
  std::size_t bytes;  ///< of the whole character; 0 when no character starts so
  char32_t bits;
  char32_t smallest;  ///< what fewer bytes could have said is no UTF-8
};

constexpr Lead leadOf(unsigned char byte) {
  if (byte < 0x80) return {1, byte, 0};
  if (byte >= 0xC0 && byte < 0xE0) return {2, byte & 0x1FU, 0x80};
  if (byte >= 0xE0 && byte < 0xF0) return {3, byte & 0x0FU, 0x800};
  if (byte >= 0xF0 && byte < 0xF8) return {4, byte & 0x07U, 0x10000};
  return {0, 0, 0};
}

/// The character at `position`, which moves behind it; kNone, unmoved, when there is none.
char32_t takeUtf8(std::string_view text, std::size_t& position) {
  const Lead lead = leadOf(static_cast<unsigned char>(text[position]));
  if (lead.bytes == 0 || position + lead.bytes > text.size()) return kNone;
  char32_t character = lead.bits;
  for (std::size_t i = 1; i < lead.bytes; ++i) {
    const auto next = static_cast<unsigned char>(text[position + i]);
    if ((next & 0xC0) != 0x80) return kNone;
    character = character << 6 | (next & 0x3FU);
  }
  if (character < lead.smallest || character > 0x10FFFF || isSurrogate(character)) return kNone;
  position += lead.bytes;
  return character;
}

void append(std::u16string& text, char32_t character) {
  if (character < 0x10000) {
    text += static_cast<char16_t>(character);
    return;
  }
  text += static_cast<char16_t>(0xD7C0 + (character >> 10));
  text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

/// The character at `position`, which moves behind it; half a pair gives itself.
char32_t takeUtf16(std::u16string_view text, std::size_t& position) {
  const char32_t first = text[position++];
  if (first < 0xD800 || first > 0xDBFF || position == text.size()) return first;
  const char32_t second = text[position];
  if (second < 0xDC00 || second > 0xDFFF) return first;
  ++position;
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void append(std::string& text, char32_t character) {
  const auto tail = [&](int shift) {
    return static_cast<char>(0x80 | (character >> shift & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += {static_cast<char>(0xC0 | character >> 6), tail(0)};
  } else if (character < 0x10000) {
    text += {static_cast<char>(0xE0 | character >> 12), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | character >> 18), tail(12), tail(6), tail(0)};
  }
}

/// Converts up to the first broken character; says where that is, or npos.
std::size_t convert(std::string_view utf8, std::u16string& wide) {
  wide.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    const char32_t character = takeUtf8(utf8, position);
    if (character == kNone) return position;
    append(wide, character);
  }
  return std::string_view::npos;
}

}  // namespace

std::optional<std::u16string> tryToWide(std::string_view utf8) {
  std::u16string wide;
  if (convert(utf8, wide) != std::string_view::npos) return std::nullopt;
  return wide;
}

std::u16string toWide(std::string_view utf8) {
  std::u16string wide;
  if (const auto broken = convert(utf8, wide); broken != std::string_view::npos)
    throwError("The text for the database is no UTF-8 from byte " + std::to_string(broken + 1) +
               " on; expected UTF-8.");
  return wide;
}

std::optional<std::string> tryToUtf8(std::u16string_view wide) {
  std::string utf8;
  utf8.reserve(wide.size());
  for (std::size_t position = 0; position < wide.size();) {
    const char32_t character = takeUtf16(wide, position);
    if (isSurrogate(character)) return std::nullopt;
    append(utf8, character);
  }
  return utf8;
}

std::string toReadableUtf8(std::u16string_view wide) {
  std::string utf8;
  for (std::size_t position = 0; position < wide.size();) {
    const char32_t character = takeUtf16(wide, position);
    append(utf8, isSurrogate(character) ? kReplacement : character);
  }
  return utf8;
}

}  // namespace velmora::ado::odbc
