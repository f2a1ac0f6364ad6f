#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

// Functions whose names are reserved words.
bool atReservedFunction(const Cursor& cursor) {
  return cursor.at("LEFT") || cursor.at("RIGHT") || cursor.at("CONVERT") || cursor.at("COALESCE") ||
         cursor.at("NULLIF") || cursor.at("TRY_CONVERT");
}

ExpressionPtr parseCast(Cursor& cursor, Position position, bool attempt) {
  CastExpression cast{parseValue(cursor), {}, attempt};
  cursor.expect("AS");
  cast.type = parseType(cursor);
  return makeExpression(position, std::move(cast));
}

ExpressionPtr parseConvert(Cursor& cursor, Position position, bool attempt) {
  ConvertExpression convert{parseType(cursor), nullptr, nullptr, attempt};
  cursor.expect(",");
  convert.operand = parseValue(cursor);
  if (cursor.accept(",")) convert.style = parseValue(cursor);
  return makeExpression(position, std::move(convert));
}

// `iif(condition, a, b)` is a CASE in short.
ExpressionPtr parseIif(Cursor& cursor, Position position) {
  std::vector<CaseBranch> branches(1);
  branches.front().when = parseCondition(cursor);
  cursor.expect(",");
  branches.front().then = parseValue(cursor);
  cursor.expect(",");
  return makeExpression(position, SearchedCase{std::move(branches), parseValue(cursor)});
}

WindowClause parseWindow(Cursor& cursor) {
  WindowClause window;
  cursor.expect("(");
  if (cursor.acceptPhrase("PARTITION BY")) window.partitionBy = parseValueList(cursor);
  if (cursor.acceptPhrase("ORDER BY")) window.orderBy = parseOrderItems(cursor);
  cursor.expect(")");
  return window;
}

void parseArguments(Cursor& cursor, FunctionCall& call) {
  if (cursor.accept("*")) {
    call.star = true;
  } else if (!cursor.at(")")) {
    call.distinct = cursor.accept("DISTINCT");
    call.arguments = parseValueList(cursor);
  }
}

ExpressionPtr parsePlainCall(Cursor& cursor, Position position, std::string name) {
  FunctionCall call;
  call.name = std::move(name);
  parseArguments(cursor, call);
  cursor.expect(")");
  if (cursor.at("WITHIN")) {
    cursor.next();
    cursor.expect("GROUP");
    cursor.expect("(");
    cursor.expect("ORDER");
    cursor.expect("BY");
    call.withinGroup = parseOrderItems(cursor);
    cursor.expect(")");
  }
  if (cursor.accept("OVER")) call.over = parseWindow(cursor);
  return makeExpression(position, std::move(call));
}

CaseBranch parseCaseBranch(Cursor& cursor, bool searched) {
  CaseBranch branch;
  branch.when = searched ? parseCondition(cursor) : parseValue(cursor);
  cursor.expect("THEN");
  branch.then = parseValue(cursor);
  return branch;
}

}  // namespace

bool atFunctionCall(const Cursor& cursor) {
  return cursor.at("(", 1) && cursor.peek().kind == TokenKind::Word &&
         (!cursor.peek().reserved || atReservedFunction(cursor));
}

ExpressionPtr parseFunctionCall(Cursor& cursor) {
  const Position position = cursor.position();
  std::string name = lowered(cursor.next().text);
  cursor.expect("(");
  const bool attempt = name.starts_with("try_");
  const std::string plain = attempt ? name.substr(4) : name;
  ExpressionPtr call;
  if (plain == "cast") {
    call = parseCast(cursor, position, attempt);
  } else if (plain == "convert") {
    call = parseConvert(cursor, position, attempt);
  } else if (name == "iif") {
    call = parseIif(cursor, position);
  } else {
    return parsePlainCall(cursor, position, std::move(name));
  }
  cursor.expect(")");
  return call;
}

ExpressionPtr parseCase(Cursor& cursor) {
  const Position position = cursor.next().position;
  const bool searched = cursor.at("WHEN");
  if (!searched) cursor.want("WHEN");
  ExpressionPtr operand = searched ? nullptr : parseValue(cursor);
  std::vector<CaseBranch> branches;
  cursor.expect("WHEN");
  do {
    branches.push_back(parseCaseBranch(cursor, searched));
  } while (cursor.accept("WHEN"));
  ExpressionPtr otherwise = cursor.accept("ELSE") ? parseValue(cursor) : nullptr;
  cursor.expect("END");
  if (searched) {
    return makeExpression(position, SearchedCase{std::move(branches), std::move(otherwise)});
  }
  return makeExpression(position,
                        SimpleCase{std::move(operand), std::move(branches), std::move(otherwise)});
}

}  // namespace velmora::tsql
