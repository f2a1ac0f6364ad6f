#include "platform/tsql/syntax/lexer.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/tsql/syntax/keywords.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"
#include "platform/tsql/syntax/unicode.h"

namespace velmora::tsql {
namespace {

// Two characters that are one symbol, even with blanks between them.
struct SymbolPair {
  char first;
  char second;
  std::string_view text;
};
constexpr auto kSymbolPairs = std::to_array<SymbolPair>({{'<', '>', "<>"},
                                                         {'<', '=', "<="},
                                                         {'>', '=', ">="},
                                                         {'!', '=', "!="},
                                                         {'!', '<', "!<"},
                                                         {'!', '>', "!>"}});
constexpr std::string_view kSymbols = ",;().*/%+-&|^~=<>";

constexpr bool isAsciiBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// Behind the name that goes on at `at`.
std::size_t nameEnd(std::string_view text, std::size_t at) {
  while (at < text.size()) {
    const char c = text[at];
    if (isAsciiLetter(c) || isAsciiDigit(c) || c == '_' || c == '#' || c == '$' || c == '@') {
      ++at;
      continue;
    }
    const CodePoint point = decode(text, at);
    if (!isNameLetter(point.value)) break;
    at += point.size;
  }
  return at;
}

// A letter, an underscore, or the # of a temporary table.
bool beginsName(std::string_view text, std::size_t at) {
  const char c = text[at];
  return isAsciiLetter(c) || c == '_' || c == '#' || isNameLetter(decode(text, at).value);
}

class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  std::vector<Token> run();

 private:
  char charAt(std::size_t at) const { return at < text_.size() ? text_[at] : '\0'; }
  bool startsWith(char first, char second) const {
    return charAt(at_) == first && charAt(at_ + 1) == second;
  }

  void checkCharacters() const;
  void skipBlanksAndComments();
  bool skipBlank();
  void moveTo(std::size_t end);
  std::size_t closed(std::size_t end, const char* what) const;

  Token scan();
  Token take(TokenKind kind, std::size_t end);
  Token scanWord();
  Token scanVariable();
  Token scanQuoted(TokenKind kind, char close);
  Token scanNationalString();
  Token scanNumber();
  Token scanSymbol();
  std::size_t digitsEnd(std::size_t at) const;
  std::size_t exponentEnd(std::size_t at) const;
  [[noreturn]] void refuseCharacter() const;

  std::string_view text_;
  std::size_t at_ = 0;
  Position position_;  // of at_
};

// The length of the character at `at`; 0 for bytes that are none.
std::size_t characterSize(std::string_view text, std::size_t at) {
  const auto [value, size] = decode(text, at);
  const bool tooLong = (size == 3 && value < 0x800) || (size == 4 && value < 0x10000);
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  return value == 0 || value > 0x10FFFF || tooLong || surrogate ? 0 : size;
}

void Lexer::checkCharacters() const {
  Position position;
  for (std::size_t at = 0; at < text_.size();) {
    const std::size_t size = characterSize(text_, at);
    if (size == 0) {
      throw SyntaxError(position, text_[at] == '\0' ? "a NUL byte, expected text"
                                                    : "bytes that are no UTF-8, expected text");
    }
    const bool newLine = text_[at] == '\n';
    position.line += newLine ? 1 : 0;
    position.column = newLine ? 1 : position.column + 1;
    at += size;
  }
}

std::vector<Token> Lexer::run() {
  checkCharacters();
  std::vector<Token> tokens;
  tokens.reserve(text_.size() / 4 + 1);
  do {
    skipBlanksAndComments();
    tokens.push_back(scan());
  } while (tokens.back().kind != TokenKind::End);
  return tokens;
}

void Lexer::moveTo(std::size_t end) {
  for (; at_ < end; ++at_) {
    const char c = text_[at_];
    if (c == '\n') {
      ++position_.line;
      position_.column = 1;
    } else if (!isContinuationByte(c)) {
      ++position_.column;
    }
  }
}

void Lexer::skipBlanksAndComments() {
  for (;;) {
    if (startsWith('-', '-')) {
      moveTo(skipLine(text_, at_));
    } else if (startsWith('/', '*')) {
      moveTo(closed(skipBlockComment(text_, at_), "the comment"));
    } else if (!skipBlank()) {
      return;
    }
  }
}

bool Lexer::skipBlank() {
  if (at_ >= text_.size()) return false;
  if (isAsciiBlank(text_[at_])) {
    moveTo(at_ + 1);
    return true;
  }
  const CodePoint point = decode(text_, at_);
  if (!isBlank(point.value)) return false;
  moveTo(at_ + point.size);
  return true;
}

std::size_t Lexer::closed(std::size_t end, const char* what) const {
  if (end == kNotClosed) throw SyntaxError(position_, std::string(what) + " is not closed");
  return end;
}

Token Lexer::take(TokenKind kind, std::size_t end) {
  Token token{kind, false, text_.substr(at_, end - at_), position_};
  moveTo(end);
  return token;
}

Token Lexer::scan() {
  if (at_ >= text_.size()) return take(TokenKind::End, at_);
  const char c = text_[at_];
  if (isAsciiDigit(c) || (c == '.' && isAsciiDigit(charAt(at_ + 1)))) return scanNumber();
  if ((c == 'N' || c == 'n') && charAt(at_ + 1) == '\'') {
    return scanNationalString();
  }
  if (c == '\'') return scanQuoted(TokenKind::String, c);
  if (const char close = closingQuote(c)) return scanQuoted(TokenKind::QuotedName, close);
  if (c == '@') return scanVariable();
  if (c == '?') return take(TokenKind::Parameter, at_ + 1);
  return beginsName(text_, at_) ? scanWord() : scanSymbol();
}

Token Lexer::scanWord() {
  Token token = take(TokenKind::Word, nameEnd(text_, at_));
  token.reserved = isReservedWord(token.text);
  return token;
}

Token Lexer::scanVariable() {
  const bool system = charAt(at_ + 1) == '@';
  const std::size_t name = at_ + (system ? 2 : 1);
  const std::size_t end = nameEnd(text_, name);
  if (end == name) refuseCharacter();
  return take(system ? TokenKind::SystemVariable : TokenKind::Variable, end);
}

Token Lexer::scanQuoted(TokenKind kind, char close) {
  const char* what = kind == TokenKind::QuotedName ? "the quoted name" : "the quoted text";
  return take(kind, closed(skipQuoted(text_, at_, close), what));
}

Token Lexer::scanNationalString() {
  const Position start = position_;
  moveTo(at_ + 1);  // the N
  Token token = scanQuoted(TokenKind::NationalString, '\'');
  token.position = start;
  return token;
}

std::size_t Lexer::digitsEnd(std::size_t at) const {
  while (isAsciiDigit(charAt(at))) ++at;
  return at;
}

// Behind e3, E-3; `at` itself when no exponent stands there.
std::size_t Lexer::exponentEnd(std::size_t at) const {
  if (asciiLower(charAt(at)) != 'e') return at;
  const std::size_t digits = at + (charAt(at + 1) == '-' || charAt(at + 1) == '+' ? 2 : 1);
  return isAsciiDigit(charAt(digits)) ? digitsEnd(digits) : at;
}

Token Lexer::scanNumber() {
  if (text_[at_] == '0' && asciiLower(charAt(at_ + 1)) == 'x') {
    std::size_t end = at_ + 2;
    while (isAsciiDigit(charAt(end)) ||
           (asciiLower(charAt(end)) >= 'a' && asciiLower(charAt(end)) <= 'f')) {
      ++end;
    }
    return take(TokenKind::Hex, end);
  }
  const std::size_t whole = digitsEnd(at_);
  const std::size_t mantissa = charAt(whole) == '.' ? digitsEnd(whole + 1) : whole;
  const std::size_t end = exponentEnd(mantissa);
  if (end != mantissa) return take(TokenKind::Float, end);
  const bool loneExponent =
      asciiLower(charAt(mantissa)) == 'e' && !isAsciiLetter(charAt(mantissa + 1));
  if (loneExponent) throw SyntaxError(position_, "an exponent without digits");
  return take(mantissa == whole ? TokenKind::Integer : TokenKind::Decimal, end);
}

Token Lexer::scanSymbol() {
  const char first = text_[at_];
  std::size_t next = at_ + 1;
  while (isAsciiBlank(charAt(next))) ++next;
  for (const SymbolPair& pair : kSymbolPairs) {
    if (pair.first != first || pair.second != charAt(next)) continue;
    Token token = take(TokenKind::Symbol, next + 1);
    token.text = pair.text;
    return token;
  }
  if (kSymbols.find(first) == std::string_view::npos) refuseCharacter();
  return take(TokenKind::Symbol, at_ + 1);
}

void Lexer::refuseCharacter() const {
  const std::string_view character = text_.substr(at_, decode(text_, at_).size);
  throw SyntaxError(position_, "unexpected character '" + std::string(character) + "'");
}

}  // namespace

std::vector<Token> tokenize(std::string_view text) {
  return Lexer(text).run();
}

bool isPlainName(std::string_view name) {
  return !name.empty() && beginsName(name, 0) && nameEnd(name, 0) == name.size() &&
         !isReservedWord(name);
}

}  // namespace velmora::tsql
