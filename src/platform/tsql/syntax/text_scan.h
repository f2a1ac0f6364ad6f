#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The shapes that the lexer and the script splitter both step over.
namespace velmora::tsql {

inline constexpr std::size_t kNotClosed = std::string_view::npos;

/// Behind the quoted text that opens at `start` and ends with `close`, a doubled `close`
/// standing for itself; kNotClosed when it never ends.
std::size_t skipQuoted(std::string_view text, std::size_t start, char close);

/// Behind the `/* */` comment that opens at `start`, nested ones included; kNotClosed when
/// it never ends.
std::size_t skipBlockComment(std::string_view text, std::size_t start);

/// At the line end behind `start`, or at the end of the text.
std::size_t skipLine(std::string_view text, std::size_t start);

/// The closing character of what `open` begins: ' and " close themselves, [ closes with ].
/// 0 when `open` begins no quoted text.
char closingQuote(char open);

/// A name's or a text's content: without the characters around it, doubled closing ones undone.
std::string unquoted(std::string_view quoted);

constexpr bool isAsciiDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isAsciiLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr char asciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Letter case aside, for words of the language (ASCII).
inline bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (asciiLower(a[i]) != asciiLower(b[i])) return false;
  }
  return true;
}
std::string lowered(std::string_view word);

}  // namespace velmora::tsql
