#include <algorithm>
#include <array>
#include <charconv>

#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"
#include "platform/tsql/syntax/type_names.h"

namespace velmora::tsql {
namespace {

constexpr int kNameLength = 128;  // sysname

const TypeName& findType(Position position, const std::string& name) {
  const auto* found =
      std::find_if(kTypeNames.begin(), kTypeNames.end(),
                   [&name](const TypeName& type) { return equalsIgnoringCase(type.name, name); });
  if (found == kTypeNames.end()) {
    throw SyntaxError(position, "unexpected '" + name +
                                    "', expected a type such as int, decimal(18,2), "
                                    "nvarchar(80) or datetime");
  }
  return *found;
}

int parseSize(Cursor& cursor, const char* what, int least, int most) {
  const Token& token = cursor.peek();
  if (token.kind != TokenKind::Integer) cursor.unexpected("a number");
  int size = 0;
  const char* end = token.text.data() + token.text.size();
  const auto result = std::from_chars(token.text.data(), end, size);
  if (result.ec != std::errc() || size < least || size > most) {
    throw SyntaxError(token.position, std::string(what) + " " + std::string(token.text) +
                                          " is out of range, expected " + std::to_string(least) +
                                          " to " + std::to_string(most));
  }
  cursor.next();
  return size;
}

void parseSizes(Cursor& cursor, const TypeName& name, DataType& type) {
  if (name.size == TypeSize::LengthOrMax && cursor.accept("MAX")) {
    type.max = true;
  } else if (name.size == TypeSize::PrecisionAndScale) {
    type.size = parseSize(cursor, "precision", 1, name.maxSize);
    if (cursor.accept(",")) type.scale = parseSize(cursor, "scale", 0, *type.size);
  } else if (name.size == TypeSize::Precision) {
    type.size = parseSize(cursor, "precision", name.kind == TypeKind::Float ? 1 : 0, name.maxSize);
  } else {
    type.size = parseSize(cursor, "length", 1, name.maxSize);
  }
}

}  // namespace

void parseCollation(Cursor& cursor) {
  constexpr auto kLanguages =
      std::to_array<std::string_view>({"chinese_", "latin1_general_", "sql_latin1_general_cp1_"});
  cursor.expect("COLLATE");
  const Position position = cursor.position();
  const std::string name = lowered(cursor.expectName());
  const bool known = std::any_of(kLanguages.begin(), kLanguages.end(),
                                 [&](std::string_view start) { return name.starts_with(start); });
  if (name == "database_default" || (known && name.ends_with("_ci_as"))) return;
  throw SyntaxError(position, "the collation '" + name +
                                  "' is not supported, expected one that ignores case and heeds "
                                  "accents, such as Chinese_PRC_CI_AS");
}

DataType parseType(Cursor& cursor) {
  DataType type;
  type.position = cursor.position();
  if (!cursor.atName()) cursor.unexpected("a type");
  const std::string word = cursor.expectName();
  if (equalsIgnoringCase(word, "sysname")) {
    type.kind = TypeKind::NVarChar;
    type.size = kNameLength;
    return type;
  }
  const TypeName& name = findType(type.position, word);
  type.kind = name.kind;
  if (name.size != TypeSize::None && cursor.accept("(")) {
    parseSizes(cursor, name, type);
    cursor.expect(")");
  }
  return type;
}

}  // namespace velmora::tsql
