#include "report/html/markup.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>

namespace velmora::report::html {

namespace {

constexpr std::size_t kPiece = 1 << 16;
constexpr std::string_view kReplacement = "\uFFFD";

bool isPlain(char character) {
  return character >= ' ' && character < '\x7f' && character != '&' && character != '<' &&
         character != '>' && character != '"';
}

bool isLetterOrDigit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

unsigned byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

/// Bytes of the UTF-8 character beyond ASCII that begins at `position`; 0 when none does.
std::size_t characterSize(std::string_view text, std::size_t position) {
  const unsigned lead = byteAt(text, position);
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - position < size) return 0;
  for (std::size_t i = 1; i < size; ++i)
    if ((byteAt(text, position + i) & 0xC0U) != 0x80) return 0;
  const unsigned second = byteAt(text, position + 1);
  const bool tooLong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool halfOfPair = lead == 0xED && second > 0x9F;
  const bool beyondLast = lead == 0xF4 && second > 0x8F;
  return tooLong || halfOfPair || beyondLast ? 0 : size;
}

bool isControl(std::string_view text, std::size_t position) {
  return byteAt(text, position) == 0xC2 && byteAt(text, position + 1) < 0xA0;
}

}  // namespace

Markup::Markup(std::ostream& out) : out_(out) {
  piece_.reserve(2 * kPiece);
}

Markup& Markup::raw(std::string_view source) {
  piece_ += source;
  if (piece_.size() >= kPiece) finish();
  return *this;
}

Markup& Markup::text(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const auto* end = std::find_if_not(text.begin() + position, text.end(), isPlain);
    const auto length = static_cast<std::size_t>(end - text.begin()) - position;
    piece_ += text.substr(position, length);
    position += length;
    if (position < text.size()) special(text, position);
  }
  return raw({});
}

void Markup::special(std::string_view text, std::size_t& position) {
  std::size_t size = 1;
  switch (const char character = text[position]) {
    case '&':
      piece_ += "&amp;";
      break;
    case '<':
      piece_ += "&lt;";
      break;
    case '>':
      piece_ += "&gt;";
      break;
    case '"':
      piece_ += "&quot;";
      break;
    case '\t':
    case '\n':
      piece_ += character;
      break;
    case '\r':  // of a line end, or alone one
      if (!text.substr(position + 1).starts_with('\n')) piece_ += '\n';
      break;
    default:
      size = byteAt(text, position) < 0x80 ? 0 : characterSize(text, position);
      if (size == 0 || isControl(text, position))
        piece_ += kReplacement;
      else
        piece_ += text.substr(position, size);
  }
  position += std::max<std::size_t>(size, 1);
}

Markup& Markup::id(std::string_view id) {
  for (const char character : id) {
    if (isLetterOrDigit(character) || character == '-' || character == '_' || character == '.')
      piece_ += character;
    else
      piece_ += fmt::format("~{:02x}", static_cast<unsigned char>(character));
  }
  return raw({});
}

void Markup::finish() {
  out_.write(piece_.data(), static_cast<std::streamsize>(piece_.size()));
  piece_.clear();
}

std::string grouped(const Decimal& amount) {
  std::string text = amount.toString();
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  for (std::size_t place = std::min(text.find('.'), text.size()); place > first + 3;)
    text.insert(place -= 3, ",");
  return text;
}

}  // namespace velmora::report::html
