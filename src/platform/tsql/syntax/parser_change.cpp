#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"

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

// `top (n)` of UPDATE and DELETE.
ExpressionPtr parseChangeTop(Cursor& cursor) {
  if (!cursor.accept("TOP")) return nullptr;
  cursor.expect("(");
  ExpressionPtr count = parseValue(cursor);
  cursor.expect(")");
  return count;
}

std::vector<SelectItem> parseOutput(Cursor& cursor) {
  if (!cursor.accept("OUTPUT")) return {};
  auto items = parseOutputItems(cursor);
  if (cursor.at("INTO")) {
    throw SyntaxError(cursor.position(), "OUTPUT ... INTO is not supported");
  }
  return items;
}

bool atQuery(const Cursor& cursor) {
  return cursor.at("SELECT") || isQueryParenthesis(cursor);
}

}  // namespace

StatementNode parseInsert(Cursor& cursor) {
  InsertStatement insert;
  cursor.expect("INSERT");
  cursor.accept("INTO");
  insert.table = parseTableName(cursor);
  if (cursor.at("(") && !atQuery(cursor)) insert.columns = parseNameList(cursor);
  insert.output = parseOutput(cursor);
  if (cursor.at("DEFAULT") && insert.columns.empty()) {
    cursor.next();
    cursor.expect("VALUES");
    insert.defaultValues = true;
    insert.source = ValueRows(1);
  } else if (cursor.accept("VALUES")) {
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
  update.top = parseChangeTop(cursor);
  update.target = parseTableName(cursor);
  cursor.expect("SET");
  update.assignments = parseCommaList(cursor, parseAssignment);
  update.output = parseOutput(cursor);
  if (cursor.accept("FROM")) update.from = parseFrom(cursor);
  if (cursor.accept("WHERE")) update.where = parseCondition(cursor);
  return update;
}

StatementNode parseDelete(Cursor& cursor) {
  DeleteStatement statement;
  cursor.expect("DELETE");
  statement.top = parseChangeTop(cursor);
  cursor.accept("FROM");
  statement.target = parseTableName(cursor);
  statement.output = parseOutput(cursor);
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
