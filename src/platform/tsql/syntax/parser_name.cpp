#include "platform/tsql/syntax/parser_parts.h"

namespace velmora::tsql {

constexpr std::size_t kMaxQualifiers = 3;  // database.schema.table.column

QualifiedName parseQualifiedName(Cursor& cursor) {
  QualifiedName result;
  result.position = cursor.position();
  result.name = cursor.expectName();
  while (cursor.at(".") && result.qualifiers.size() < kMaxQualifiers) {
    cursor.next();
    result.qualifiers.push_back(std::move(result.name));
    // `db..t` leaves the schema to the server.
    const bool skipped = cursor.at(".") && result.qualifiers.size() < kMaxQualifiers;
    result.name = skipped ? std::string() : cursor.expectName();
  }
  return result;
}

QualifiedName parseTableName(Cursor& cursor) {
  const Position position = cursor.position();
  if (cursor.peek().kind != TokenKind::Variable) return parseQualifiedName(cursor);
  return {position, {}, parseVariableName(cursor)};
}

std::string parseVariableName(Cursor& cursor) {
  if (cursor.peek().kind != TokenKind::Variable) cursor.unexpected("a @variable");
  return std::string(cursor.next().text);
}

std::vector<std::string> parseNameList(Cursor& cursor) {
  cursor.expect("(");
  auto names = parseCommaList(cursor, [](Cursor& inside) { return inside.expectName(); });
  cursor.expect(")");
  return names;
}

}  // namespace velmora::tsql
