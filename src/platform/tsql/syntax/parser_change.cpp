#include "platform/tsql/syntax/parser_parts.h"

namespace velmora::tsql {
namespace {

// DEFAULT stands for a value only where a column takes one.
ExpressionPtr parseColumnValue(Cursor& cursor) {
  const Position position = cursor.position();
  if (cursor.accept("DEFAULT")) return makeExpression(position, DefaultLiteral{});
  return parseValue(cursor);
}

std::vector<ExpressionPtr> parseValueRow(Cursor& cursor) {
  cursor.expect("(");
  auto values = parseCommaList(cursor, parseColumnValue);
  cursor.expect(")");
  return values;
}

Assignment parseAssignment(Cursor& cursor) {
  Assignment assignment;
  assignment.column = parseQualifiedName(cursor);
  cursor.expect("=");
  assignment.value = parseColumnValue(cursor);
  return assignment;
}

bool atQuery(const Cursor& cursor) {
  return cursor.at("SELECT") || isQueryParenthesis(cursor);
}

}  // namespace

StatementNode parseInsert(Cursor& cursor) {
  InsertStatement insert;
  cursor.expect("INSERT");
  cursor.accept("INTO");
  insert.table = parseQualifiedName(cursor);
  if (cursor.at("(") && !atQuery(cursor)) insert.columns = parseNameList(cursor);
  if (cursor.accept("VALUES")) {
    insert.source = parseCommaList(cursor, parseValueRow);
  } else if (atQuery(cursor)) {
    insert.source = parseQuery(cursor);
  } else {
    cursor.unexpected("SELECT");
  }
  return insert;
}

StatementNode parseUpdate(Cursor& cursor) {
  UpdateStatement update;
  cursor.expect("UPDATE");
  update.target = parseQualifiedName(cursor);
  cursor.expect("SET");
  update.assignments = parseCommaList(cursor, parseAssignment);
  if (cursor.accept("FROM")) update.from = parseFrom(cursor);
  if (cursor.accept("WHERE")) update.where = parseCondition(cursor);
  return update;
}

StatementNode parseDelete(Cursor& cursor) {
  DeleteStatement statement;
  cursor.expect("DELETE");
  cursor.accept("FROM");
  statement.target = parseQualifiedName(cursor);
  if (cursor.accept("FROM")) statement.from = parseFrom(cursor);
  if (cursor.accept("WHERE")) statement.where = parseCondition(cursor);
  return statement;
}

StatementNode parseTruncate(Cursor& cursor) {
  cursor.expect("TRUNCATE");
  cursor.expect("TABLE");
  return TruncateStatement{parseQualifiedName(cursor)};
}

}  // namespace velmora::tsql
