#pragma once

#include <string_view>
#include <vector>

#include "platform/tsql/syntax/position.h"

namespace velmora::tsql {

enum class TokenKind {
  Word,            // a keyword, a plain name, #name
  QuotedName,      // [name], "name"
  Variable,        // @name
  SystemVariable,  // @@name
  String,          // 'text'
  NationalString,  // N'text', the text without the N
  Integer,
  Decimal,
  Float,
  Hex,        // 0x...
  Parameter,  // ?
  Symbol,
  End,
};

struct Token {
  TokenKind kind = TokenKind::End;
  /// A word that is no name.
  bool reserved = false;
  /// As written, quotes included. A symbol in its one spelling ("< >" is "<>").
  std::string_view text;
  Position position;
};

/// The tokens of a batch, closed by one of kind End. Their texts point into `text`.
/// Raises SyntaxError for a character that begins no token and for quoted texts and
/// comments that do not end.
std::vector<Token> tokenize(std::string_view text);

/// Whether `name` may be written without brackets.
bool isPlainName(std::string_view name);

}  // namespace velmora::tsql
