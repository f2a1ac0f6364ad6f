#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tsql/syntax/ast_expression.h"
#include "platform/tsql/syntax/lexer.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {

/// Walks the tokens of a batch. What the parser asked for in vain at the current token is
/// remembered, so that the error can say what was expected there.
///
/// Words of the language and symbols are asked for by their text ("FROM", ","); a word
/// matches in any letter case, and never a quoted name.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : tokens_(tokenize(text)) {}

  const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(current_ + ahead, tokens_.size() - 1)];
  }
  Position position() const { return peek().position; }
  bool at(std::string_view what, std::size_t ahead = 0) const {
    const Token& token = peek(ahead);
    return (token.kind == TokenKind::Word || token.kind == TokenKind::Symbol) &&
           equalsIgnoringCase(token.text, what);
  }
  bool atEnd() const { return peek().kind == TokenKind::End; }
  bool atName(std::size_t ahead = 0) const;
  /// How many tokens ahead lies the `)` of the `(` that is `open` tokens ahead; at the
  /// batch's end when it is missing.
  std::size_t closingAhead(std::size_t open) const;

  const Token& next();
  bool accept(std::string_view what);
  /// Two words, "GROUP BY": where the first stands, the second must follow.
  bool acceptPhrase(std::string_view phrase);
  void expect(std::string_view what);
  std::string expectName();

  /// Remembers one more thing that could stand here, "a name" for instance.
  void want(std::string_view what) { wanted_.push_back(what); }
  /// Raises "unexpected 'x', expected FROM, ',' or a name" at the current token.
  [[noreturn]] void unexpected() const;
  [[noreturn]] void unexpected(std::string_view wanted);

  /// The index of the `?` at the current token; they count in the order of the text.
  int takeParameter() { return parameterCount_++; }
  int parameterCount() const { return parameterCount_; }

 private:
  friend class DepthGuard;

  std::vector<Token> tokens_;
  std::size_t current_ = 0;
  std::vector<std::string_view> wanted_;
  int parameterCount_ = 0;
  int depth_ = 0;
};

/// One level of nesting while it lives. Raises SyntaxError beyond kMaxDepth.
class DepthGuard {
 public:
  explicit DepthGuard(Cursor& cursor);
  ~DepthGuard() { --cursor_.depth_; }
  DepthGuard(const DepthGuard&) = delete;
  DepthGuard& operator=(const DepthGuard&) = delete;

 private:
  Cursor& cursor_;
};

}  // namespace velmora::tsql
