#include "platform/tsql/syntax/cursor.h"

#include <algorithm>

#include "platform/tsql/syntax/limits.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"
#include "platform/tsql/syntax/unicode.h"

namespace velmora::tsql {
namespace {

constexpr std::size_t kShownBytes = 60;

// The token as a message shows it: a long text is cut between two characters.
std::string shown(const Token& token) {
  if (token.kind == TokenKind::End) return "end of text";
  const bool quoted = token.kind == TokenKind::String || token.kind == TokenKind::NationalString;
  const std::string quote = quoted ? "" : "'";
  if (token.text.size() <= kShownBytes) return quote + std::string(token.text) + quote;
  std::size_t end = kShownBytes;
  while (isContinuationByte(token.text[end])) --end;
  return quote + std::string(token.text.substr(0, end)) + "..." + quote;
}

std::string shownWanted(std::string_view what) {
  return isAsciiLetter(what.front()) ? std::string(what) : "'" + std::string(what) + "'";
}

std::string joined(const std::vector<std::string_view>& wanted) {
  std::vector<std::string_view> distinct;
  for (const std::string_view what : wanted) {
    if (std::find(distinct.begin(), distinct.end(), what) == distinct.end()) {
      distinct.push_back(what);
    }
  }
  std::string text;
  for (std::size_t i = 0; i < distinct.size(); ++i) {
    if (i > 0) text += i + 1 == distinct.size() ? " or " : ", ";
    text += shownWanted(distinct[i]);
  }
  return text;
}

}  // namespace

bool Cursor::atName(std::size_t ahead) const {
  const Token& token = peek(ahead);
  return token.kind == TokenKind::QuotedName || (token.kind == TokenKind::Word && !token.reserved);
}

std::size_t Cursor::closingAhead(std::size_t open) const {
  std::size_t ahead = open;
  for (int depth = 0; peek(ahead).kind != TokenKind::End; ++ahead) {
    if (at("(", ahead)) ++depth;
    if (at(")", ahead) && --depth == 0) break;
  }
  return ahead;
}

const Token& Cursor::next() {
  wanted_.clear();
  const Token& token = tokens_[current_];
  if (token.kind != TokenKind::End) ++current_;
  return token;
}

bool Cursor::accept(std::string_view what) {
  if (!at(what)) {
    want(what);
    return false;
  }
  next();
  return true;
}

bool Cursor::acceptPhrase(std::string_view phrase) {
  const std::size_t blank = phrase.find(' ');
  if (!at(phrase.substr(0, blank))) {
    want(phrase);
    return false;
  }
  next();
  expect(phrase.substr(blank + 1));
  return true;
}

void Cursor::expect(std::string_view what) {
  if (!accept(what)) unexpected();
}

std::string Cursor::expectName() {
  if (!atName()) unexpected("a name");
  const Token& token = peek();
  if (token.text.starts_with("##")) {
    throw SyntaxError(token.position, "global temporary tables ('" + std::string(token.text) +
                                          "') are not supported, expected a name or #name");
  }
  const bool quoted = token.kind == TokenKind::QuotedName;
  std::string name = quoted ? unquoted(token.text) : std::string(token.text);
  if (name.empty()) unexpected("a name");
  next();
  return name;
}

void Cursor::unexpected() const {
  std::string problem = "unexpected " + shown(peek());
  if (!wanted_.empty()) problem += ", expected " + joined(wanted_);
  throw SyntaxError(position(), problem);
}

void Cursor::unexpected(std::string_view wanted) {
  want(wanted);
  unexpected();
}

DepthGuard::DepthGuard(Cursor& cursor) : cursor_(cursor) {
  if (cursor.depth_ >= kMaxDepth) {
    throw SyntaxError(cursor.position(), "nested deeper than " + std::to_string(kMaxDepth) +
                                             " levels at " + shown(cursor.peek()));
  }
  ++cursor_.depth_;
}

}  // namespace velmora::tsql
