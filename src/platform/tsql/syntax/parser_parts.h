#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/tsql/syntax/ast.h"
#include "platform/tsql/syntax/cursor.h"

/// The grammar, one function per construct. Each starts at the construct's first token and
/// leaves the cursor behind its last one.
namespace velmora::tsql {

// parser_expression.cpp
ExpressionPtr parseValue(Cursor& cursor);
ExpressionPtr parseCondition(Cursor& cursor);
std::vector<ExpressionPtr> parseValueList(Cursor& cursor);

// parser_function.cpp
bool atFunctionCall(const Cursor& cursor);
ExpressionPtr parseFunctionCall(Cursor& cursor);
ExpressionPtr parseCase(Cursor& cursor);

// parser_type.cpp
DataType parseType(Cursor& cursor);
/// `collate name`: a collation that compares texts as the embedded database does, which knows
/// no other.
void parseCollation(Cursor& cursor);

// parser_query.cpp
QueryPtr parseQuery(Cursor& cursor);
/// The query of a SELECT statement: INTO and assignments to variables are welcome.
QueryPtr parseTopQuery(Cursor& cursor);
/// Whether the cursor stands at a `(` that holds a query, and no expression or join.
bool isQueryParenthesis(const Cursor& cursor);
std::vector<OrderItem> parseOrderItems(Cursor& cursor);
/// The columns of OUTPUT.
std::vector<SelectItem> parseOutputItems(Cursor& cursor);

// parser_from.cpp
std::vector<TableSourcePtr> parseFrom(Cursor& cursor);

// parser_change.cpp, parser_definition.cpp, parser_set.cpp, parser_statement.cpp
StatementNode parseInsert(Cursor& cursor);
StatementNode parseUpdate(Cursor& cursor);
StatementNode parseDelete(Cursor& cursor);
StatementNode parseTruncate(Cursor& cursor);
StatementNode parseCreate(Cursor& cursor);
StatementNode parseDrop(Cursor& cursor);
StatementNode parseAlter(Cursor& cursor);
/// `(column, ..., key, ...)` of a new table.
void parseTableBody(Cursor& cursor, CreateTableStatement& create);
StatementNode parseDeclare(Cursor& cursor);
StatementNode parseSet(Cursor& cursor);
Statement parseStatement(Cursor& cursor);
/// Statements up to the word `closing`, which is left, or to the end of the text when it is
/// empty; separated by `;` or by nothing.
std::vector<Statement> parseStatements(Cursor& cursor, std::string_view closing);

// parser_name.cpp
QualifiedName parseQualifiedName(Cursor& cursor);
/// A table, which may be a variable.
QualifiedName parseTableName(Cursor& cursor);
/// `@v`.
std::string parseVariableName(Cursor& cursor);
/// `(a, b)`.
std::vector<std::string> parseNameList(Cursor& cursor);

/// `item, item, ...`; the items are whatever `parseItem` makes of the cursor.
template <typename ParseItem>
auto parseCommaList(Cursor& cursor, ParseItem parseItem) {
  std::vector<decltype(parseItem(cursor))> items;
  do {
    items.push_back(parseItem(cursor));
  } while (cursor.accept(","));
  return items;
}

inline ExpressionPtr makeExpression(Position position, ExpressionNode node) {
  return std::make_unique<Expression>(Expression{position, std::move(node)});
}

}  // namespace velmora::tsql
