#include <algorithm>
#include <array>

#include "platform/tsql/syntax/parser_parts.h"

namespace velmora::tsql {
namespace {

StatementNode parseSelectStatement(Cursor& cursor) {
  return SelectStatement{parseTopQuery(cursor)};
}

StatementPtr parseStatementPtr(Cursor& cursor) {
  return std::make_unique<Statement>(parseStatement(cursor));
}

StatementNode parseIf(Cursor& cursor) {
  IfStatement statement;
  cursor.expect("IF");
  statement.condition = parseCondition(cursor);
  statement.then = parseStatementPtr(cursor);
  if (cursor.at(";") && cursor.at("ELSE", 1)) cursor.next();
  if (cursor.accept("ELSE")) statement.otherwise = parseStatementPtr(cursor);
  return statement;
}

StatementNode parseWhile(Cursor& cursor) {
  WhileStatement statement;
  cursor.expect("WHILE");
  statement.condition = parseCondition(cursor);
  statement.body = parseStatementPtr(cursor);
  return statement;
}

StatementNode parseBreak(Cursor& cursor) {
  cursor.expect("BREAK");
  return BreakStatement{};
}

StatementNode parseContinue(Cursor& cursor) {
  cursor.expect("CONTINUE");
  return ContinueStatement{};
}

bool atTransactionWord(const Cursor& cursor, std::size_t ahead) {
  return cursor.at("TRAN", ahead) || cursor.at("TRANSACTION", ahead);
}

StatementNode finishTransaction(Cursor& cursor, TransactionAction action) {
  if (atTransactionWord(cursor, 0)) {
    cursor.next();
    if (cursor.atName()) cursor.expectName();
  } else if (action != TransactionAction::Begin) {
    cursor.accept("WORK");
  }
  return TransactionStatement{action};
}

StatementNode parseCommit(Cursor& cursor) {
  cursor.expect("COMMIT");
  return finishTransaction(cursor, TransactionAction::Commit);
}

StatementNode parseRollback(Cursor& cursor) {
  cursor.expect("ROLLBACK");
  return finishTransaction(cursor, TransactionAction::Rollback);
}

StatementNode parseBegin(Cursor& cursor) {
  cursor.expect("BEGIN");
  if (atTransactionWord(cursor, 0)) return finishTransaction(cursor, TransactionAction::Begin);
  BlockStatement block{parseStatements(cursor, "END")};
  if (block.statements.empty()) parseStatement(cursor);  // raises: a block holds a statement
  cursor.expect("END");
  return block;
}

StatementNode parsePrint(Cursor& cursor) {
  cursor.expect("PRINT");
  return PrintStatement{parseValue(cursor)};
}

struct StatementStart {
  std::string_view word;
  StatementNode (*parse)(Cursor&);
};

constexpr auto kStatements = std::to_array<StatementStart>({
    {"SELECT", parseSelectStatement},
    {"WITH", parseSelectStatement},
    {"INSERT", parseInsert},
    {"UPDATE", parseUpdate},
    {"DELETE", parseDelete},
    {"TRUNCATE", parseTruncate},
    {"CREATE", parseCreate},
    {"DROP", parseDrop},
    {"DECLARE", parseDeclare},
    {"SET", parseSet},
    {"ALTER", parseAlter},
    {"IF", parseIf},
    {"WHILE", parseWhile},
    {"BREAK", parseBreak},
    {"CONTINUE", parseContinue},
    {"BEGIN", parseBegin},
    {"PRINT", parsePrint},
    {"COMMIT", parseCommit},
    {"ROLLBACK", parseRollback},
});

const StatementStart* statementStart(const Cursor& cursor) {
  const auto* found =
      std::find_if(kStatements.begin(), kStatements.end(), [&cursor](const StatementStart& start) {
        return cursor.at(start.word) || (start.word == "SELECT" && isQueryParenthesis(cursor));
      });
  return found == kStatements.end() ? nullptr : found;
}

void skipSemicolons(Cursor& cursor) {
  while (cursor.at(";")) cursor.next();
}

}  // namespace

std::vector<Statement> parseStatements(Cursor& cursor, std::string_view closing) {
  const auto atClose = [&] { return closing.empty() ? cursor.atEnd() : cursor.at(closing); };
  std::vector<Statement> statements;
  skipSemicolons(cursor);
  while (!atClose()) {
    if (cursor.atEnd()) cursor.unexpected(closing);
    statements.push_back(parseStatement(cursor));
    if (!cursor.at(";") && !cursor.atEnd() && !atClose() && !statementStart(cursor)) {
      cursor.unexpected("end of statement");
    }
    skipSemicolons(cursor);
  }
  return statements;
}

Statement parseStatement(Cursor& cursor) {
  const DepthGuard guard(cursor);
  const Position position = cursor.position();
  const StatementStart* start = statementStart(cursor);
  if (!start) {
    for (const StatementStart& known : kStatements) cursor.want(known.word);
    cursor.unexpected();
  }
  return {position, start->parse(cursor)};
}

}  // namespace velmora::tsql
