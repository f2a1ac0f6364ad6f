#include <algorithm>
#include <utility>

#include "platform/tsql/syntax/operators.h"
#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

ExpressionPtr parseAtLeast(Cursor& cursor, Precedence loosest);

template <typename... Node>
bool holdsAny(const ExpressionNode& node) {
  return (std::holds_alternative<Node>(node) || ...);
}

bool isCondition(const Expression& expression) {
  return holdsAny<Comparison, LogicalExpression, NotExpression, BetweenCondition, InListCondition,
                  InSubqueryCondition, QuantifiedComparison, LikeCondition, IsNullCondition,
                  ExistsCondition>(expression.node);
}

ExpressionPtr requireValue(ExpressionPtr expression) {
  if (isCondition(*expression)) {
    throw SyntaxError(expression->position, "a condition stands here, expected a value");
  }
  return expression;
}

ExpressionPtr requireCondition(Cursor& cursor, ExpressionPtr expression) {
  if (!isCondition(*expression)) cursor.unexpected("a comparison");
  return expression;
}

ExpressionPtr parseOperand(Cursor& cursor, Precedence loosest) {
  return requireValue(parseAtLeast(cursor, loosest));
}

// Literals, names, parentheses -------------------------------------------------------------

ExpressionNode literalNode(Cursor& cursor, const Token& token) {
  const std::string_view text = token.text;
  switch (token.kind) {
    case TokenKind::Integer:
      return IntegerLiteral{std::string(text)};
    case TokenKind::Decimal:
      return DecimalLiteral{std::string(text)};
    case TokenKind::Float:
      return FloatLiteral{std::string(text)};
    case TokenKind::Hex:
      return HexLiteral{std::string(text.substr(2))};
    case TokenKind::String:
      return StringLiteral{unquoted(text), false};
    case TokenKind::NationalString:
      return StringLiteral{unquoted(text), true};
    case TokenKind::Parameter:
      return ParameterMarker{cursor.takeParameter()};
    case TokenKind::Variable:
      return VariableReference{std::string(text)};
    case TokenKind::SystemVariable:
      return SystemVariable{lowered(text)};
    default:
      cursor.unexpected("a value");
  }
}

ExpressionPtr parseLiteral(Cursor& cursor) {
  const Token token = cursor.peek();
  ExpressionPtr literal = makeExpression(token.position, literalNode(cursor, token));
  cursor.next();
  return literal;
}

QueryPtr parseParenthesizedQuery(Cursor& cursor) {
  cursor.expect("(");
  QueryPtr query = parseQuery(cursor);
  cursor.expect(")");
  return query;
}

ExpressionPtr parseParenthesized(Cursor& cursor) {
  const Position position = cursor.position();
  if (isQueryParenthesis(cursor)) {
    return makeExpression(position, ScalarSubquery{parseParenthesizedQuery(cursor)});
  }
  cursor.expect("(");
  ExpressionPtr inside = parseAtLeast(cursor, Precedence::Or);
  cursor.expect(")");
  return inside;
}

ExpressionPtr parseExists(Cursor& cursor) {
  const Position position = cursor.next().position;
  return makeExpression(position, ExistsCondition{parseParenthesizedQuery(cursor)});
}

ExpressionPtr parsePrimary(Cursor& cursor) {
  const Position position = cursor.position();
  if (cursor.at("(")) return parseParenthesized(cursor);
  if (cursor.at("CASE")) return parseCase(cursor);
  if (cursor.at("EXISTS")) return parseExists(cursor);
  if (cursor.at("NULL")) {
    cursor.next();
    return makeExpression(position, NullLiteral{});
  }
  if (atFunctionCall(cursor)) return parseFunctionCall(cursor);
  if (cursor.atName()) return makeExpression(position, ColumnReference{parseQualifiedName(cursor)});
  return parseLiteral(cursor);
}

// Operators before and between operands ------------------------------------------------------

const PrefixOperator* prefixOperator(const Cursor& cursor) {
  const auto* found =
      std::find_if(kPrefixOperators.begin(), kPrefixOperators.end(),
                   [&cursor](const PrefixOperator& op) { return cursor.at(op.text); });
  return found == kPrefixOperators.end() ? nullptr : found;
}

const InfixOperator* infixOperator(const Cursor& cursor) {
  const Token& token = cursor.peek();
  if (token.kind != TokenKind::Symbol && !token.reserved) return nullptr;
  const auto* found =
      std::find_if(kInfixOperators.begin(), kInfixOperators.end(),
                   [&cursor](const InfixOperator& op) { return cursor.at(op.text); });
  return found == kInfixOperators.end() ? nullptr : found;
}

ExpressionPtr parsePrefixed(Cursor& cursor, Precedence loosest) {
  const DepthGuard guard(cursor);
  const Position position = cursor.position();
  if (const PrefixOperator* op = prefixOperator(cursor)) {
    cursor.next();
    return makeExpression(position,
                          UnaryExpression{op->meaning, parseOperand(cursor, Precedence::Unary)});
  }
  if (loosest <= Precedence::Not && cursor.at("NOT")) {
    cursor.next();
    ExpressionPtr operand = requireCondition(cursor, parseAtLeast(cursor, Precedence::Not));
    return makeExpression(position, NotExpression{std::move(operand)});
  }
  ExpressionPtr value = parsePrimary(cursor);
  while (cursor.at("COLLATE")) {
    value = requireValue(std::move(value));
    parseCollation(cursor);
  }
  return value;
}

ExpressionPtr parseIsNull(Cursor& cursor, ExpressionPtr operand, Position position) {
  const bool negated = cursor.accept("NOT");
  cursor.expect("NULL");
  return makeExpression(position, IsNullCondition{std::move(operand), negated});
}

ExpressionPtr parseIn(Cursor& cursor, ExpressionPtr operand, Position position, bool negated) {
  if (isQueryParenthesis(cursor)) {
    QueryPtr query = parseParenthesizedQuery(cursor);
    return makeExpression(position,
                          InSubqueryCondition{std::move(operand), std::move(query), negated});
  }
  cursor.expect("(");
  std::vector<ExpressionPtr> items = parseValueList(cursor);
  cursor.expect(")");
  return makeExpression(position, InListCondition{std::move(operand), std::move(items), negated});
}

ExpressionPtr parseLike(Cursor& cursor, ExpressionPtr operand, Position position, bool negated) {
  LikeCondition like{std::move(operand), parseValue(cursor), nullptr, negated};
  if (cursor.accept("ESCAPE")) like.escape = parseValue(cursor);
  return makeExpression(position, std::move(like));
}

ExpressionPtr parseBetween(Cursor& cursor, ExpressionPtr operand, Position position, bool negated) {
  BetweenCondition between{std::move(operand), parseValue(cursor), nullptr, negated};
  cursor.expect("AND");
  between.high = parseValue(cursor);
  return makeExpression(position, std::move(between));
}

ExpressionPtr parsePredicate(Cursor& cursor, ExpressionPtr operand) {
  const Position position = cursor.position();
  if (cursor.accept("IS")) return parseIsNull(cursor, std::move(operand), position);
  const bool negated = cursor.accept("NOT");
  if (cursor.accept("IN")) return parseIn(cursor, std::move(operand), position, negated);
  if (cursor.accept("LIKE")) return parseLike(cursor, std::move(operand), position, negated);
  cursor.expect("BETWEEN");
  return parseBetween(cursor, std::move(operand), position, negated);
}

ExpressionPtr parseComparison(Cursor& cursor, ExpressionPtr left, ComparisonOperator op) {
  const Position position = cursor.next().position;
  const bool all = cursor.at("ALL");
  if (all || cursor.at("ANY") || cursor.at("SOME")) {
    cursor.next();
    return makeExpression(
        position, QuantifiedComparison{op, std::move(left), parseParenthesizedQuery(cursor), all});
  }
  return makeExpression(position, Comparison{op, std::move(left), parseValue(cursor)});
}

// The whole chain of operators that bind as `precedence`.
ExpressionPtr parseArithmetic(Cursor& cursor, ExpressionPtr first, Precedence precedence) {
  const Position position = cursor.position();
  ArithmeticExpression chain{std::move(first), {}};
  for (const InfixOperator* op = infixOperator(cursor); op && op->precedence == precedence;
       op = infixOperator(cursor)) {
    const Position place = cursor.next().position;
    chain.rest.push_back({std::get<ArithmeticOperator>(op->meaning), place,
                          parseOperand(cursor, tighterThan(precedence))});
  }
  return makeExpression(position, std::move(chain));
}

ExpressionPtr parseLogical(Cursor& cursor, ExpressionPtr first, const InfixOperator& op) {
  const Position position = cursor.position();
  LogicalExpression chain{std::get<LogicalOperator>(op.meaning), {}};
  chain.operands.push_back(requireCondition(cursor, std::move(first)));
  while (cursor.at(op.text)) {
    cursor.next();
    ExpressionPtr operand = parseAtLeast(cursor, tighterThan(op.precedence));
    chain.operands.push_back(requireCondition(cursor, std::move(operand)));
  }
  return makeExpression(position, std::move(chain));
}

ExpressionPtr parseInfix(Cursor& cursor, ExpressionPtr left, const InfixOperator& op) {
  if (std::holds_alternative<LogicalOperator>(op.meaning)) {
    return parseLogical(cursor, std::move(left), op);
  }
  left = requireValue(std::move(left));
  if (const auto* comparison = std::get_if<ComparisonOperator>(&op.meaning)) {
    return parseComparison(cursor, std::move(left), *comparison);
  }
  if (std::holds_alternative<PredicateWord>(op.meaning)) {
    return parsePredicate(cursor, std::move(left));
  }
  return parseArithmetic(cursor, std::move(left), op.precedence);
}

// An expression whose outermost operator binds at least as tight as `loosest`.
ExpressionPtr parseAtLeast(Cursor& cursor, Precedence loosest) {
  ExpressionPtr left = parsePrefixed(cursor, loosest);
  for (;;) {
    const InfixOperator* op = infixOperator(cursor);
    if (!op || op->precedence < loosest) {
      cursor.want("an operator");
      return left;
    }
    left = parseInfix(cursor, std::move(left), *op);
  }
}

}  // namespace

ExpressionPtr parseValue(Cursor& cursor) {
  return parseOperand(cursor, Precedence::Additive);
}

ExpressionPtr parseCondition(Cursor& cursor) {
  return requireCondition(cursor, parseAtLeast(cursor, Precedence::Or));
}

std::vector<ExpressionPtr> parseValueList(Cursor& cursor) {
  return parseCommaList(cursor, parseValue);
}

}  // namespace velmora::tsql
