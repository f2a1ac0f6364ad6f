#include <utility>

#include "platform/tsql/syntax/limits.h"
#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

// INTO and assignments to variables belong to a statement's own select, not to a subquery.
enum class SelectPlace { Statement, Inside };

QueryBodyPtr makeBody(Position position, decltype(QueryBody::node) node) {
  return std::make_unique<QueryBody>(QueryBody{position, std::move(node)});
}

// The select list -----------------------------------------------------------------------------

// How many tokens the `t.` before a star takes; 0 for a plain star, nothing when no star comes.
std::optional<std::size_t> starAhead(const Cursor& cursor) {
  std::size_t ahead = 0;
  while (cursor.atName(ahead) && cursor.at(".", ahead + 1)) ahead += 2;
  return cursor.at("*", ahead) ? std::optional(ahead) : std::nullopt;
}

StarItem parseStar(Cursor& cursor, std::size_t qualifierTokens) {
  StarItem star;
  if (qualifierTokens > 0) {
    QualifiedName name;
    name.position = cursor.position();
    for (std::size_t taken = 0; taken < qualifierTokens; taken += 2) {
      if (taken > 0) name.qualifiers.push_back(std::move(name.name));
      name.name = cursor.expectName();
      cursor.expect(".");
    }
    star.qualifier = std::move(name);
  }
  cursor.expect("*");
  return star;
}

std::optional<std::string> parseColumnAlias(Cursor& cursor) {
  const bool as = cursor.accept("AS");
  const TokenKind kind = cursor.peek().kind;
  if (kind == TokenKind::String || kind == TokenKind::NationalString) {
    std::string alias = unquoted(cursor.peek().text);
    if (alias.empty()) cursor.unexpected("a name");
    cursor.next();
    return alias;
  }
  if (as || cursor.atName()) return cursor.expectName();
  cursor.want("a name");
  return std::nullopt;
}

bool atEqualsSign(const Cursor& cursor) {
  return cursor.at("=", 1);
}

ColumnItem parseColumnItem(Cursor& cursor) {
  if (cursor.atName() && atEqualsSign(cursor)) {
    std::string alias = cursor.expectName();
    cursor.expect("=");
    return {parseValue(cursor), std::move(alias)};
  }
  ExpressionPtr value = parseValue(cursor);
  return {std::move(value), parseColumnAlias(cursor)};
}

SelectItem parseSelectItem(Cursor& cursor, SelectPlace place) {
  const Position position = cursor.position();
  if (const auto star = starAhead(cursor)) return {position, parseStar(cursor, *star)};
  if (place == SelectPlace::Statement && cursor.peek().kind == TokenKind::Variable &&
      atEqualsSign(cursor)) {
    std::string variable = parseVariableName(cursor);
    cursor.expect("=");
    return {position, AssignmentItem{std::move(variable), parseValue(cursor)}};
  }
  return {position, parseColumnItem(cursor)};
}

void requireOneKind(const std::vector<SelectItem>& items) {
  const bool assigns = std::holds_alternative<AssignmentItem>(items.front().node);
  for (const SelectItem& item : items) {
    if (std::holds_alternative<AssignmentItem>(item.node) == assigns) continue;
    throw SyntaxError(item.position,
                      "a select that assigns to variables cannot return columns as well");
  }
}

// Clauses ---------------------------------------------------------------------------------------

// `top 10`, `top (expr)`.
ExpressionPtr parseTop(Cursor& cursor) {
  if (cursor.accept("(")) {
    ExpressionPtr count = parseValue(cursor);
    cursor.expect(")");
    return count;
  }
  const Token token = cursor.peek();
  if (token.kind != TokenKind::Integer && token.kind != TokenKind::Decimal) {
    cursor.unexpected("a number");
  }
  cursor.next();
  if (token.kind == TokenKind::Decimal) {
    return makeExpression(token.position, DecimalLiteral{std::string(token.text)});
  }
  return makeExpression(token.position, IntegerLiteral{std::string(token.text)});
}

GroupBy parseGroupBy(Cursor& cursor) {
  GroupBy groupBy;
  if (cursor.at("ROLLUP") && cursor.at("(", 1)) {
    cursor.next();
    cursor.expect("(");
    groupBy.keys = parseValueList(cursor);
    cursor.expect(")");
    groupBy.rollup = true;
    return groupBy;
  }
  groupBy.keys = parseValueList(cursor);
  // WITH may also begin the next statement.
  if (cursor.at("WITH") && !cursor.at("AS", 2) && !cursor.at("(", 2)) {
    cursor.next();
    cursor.expect("ROLLUP");
    groupBy.rollup = true;
  }
  return groupBy;
}

Select parseSelect(Cursor& cursor, SelectPlace place) {
  Select select;
  cursor.expect("SELECT");
  select.distinct = cursor.accept("DISTINCT");
  if (!select.distinct) cursor.accept("ALL");
  if (cursor.accept("TOP")) {
    select.top = parseTop(cursor);
    select.percent = cursor.accept("PERCENT");
    select.withTies = cursor.at("WITH") && cursor.at("TIES", 1);
    for (int words = select.withTies ? 2 : 0; words > 0; --words) cursor.next();
  }
  select.items =
      parseCommaList(cursor, [place](Cursor& inside) { return parseSelectItem(inside, place); });
  requireOneKind(select.items);
  if (place == SelectPlace::Statement && cursor.accept("INTO")) {
    select.into = parseQualifiedName(cursor);
  }
  if (cursor.accept("FROM")) select.from = parseFrom(cursor);
  if (cursor.accept("WHERE")) select.where = parseCondition(cursor);
  if (cursor.acceptPhrase("GROUP BY")) select.groupBy = parseGroupBy(cursor);
  if (cursor.accept("HAVING")) select.having = parseCondition(cursor);
  return select;
}

// Queries ---------------------------------------------------------------------------------------

QueryBodyPtr parseUnion(Cursor& cursor, SelectPlace place);

QueryBodyPtr parseBranch(Cursor& cursor, SelectPlace place) {
  const Position position = cursor.position();
  if (!cursor.at("(")) return makeBody(position, parseSelect(cursor, place));
  const DepthGuard guard(cursor);
  cursor.expect("(");
  QueryBodyPtr inside = parseUnion(cursor, SelectPlace::Inside);
  cursor.expect(")");
  return inside;
}

// EXCEPT and INTERSECT nest, unlike the branches of a union.
void countSetQuery(const Cursor& cursor, int& count) {
  if (++count <= kMaxDepth) return;
  throw SyntaxError(cursor.position(), "more than " + std::to_string(kMaxDepth) +
                                           " times EXCEPT or INTERSECT in one query");
}

QueryBodyPtr parseIntersect(Cursor& cursor, SelectPlace place, int& count) {
  const Position position = cursor.position();
  QueryBodyPtr left = parseBranch(cursor, place);
  while (cursor.accept("INTERSECT")) {
    countSetQuery(cursor, count);
    QueryBodyPtr right = parseBranch(cursor, SelectPlace::Inside);
    left = makeBody(position, SetQuery{true, std::move(left), std::move(right)});
  }
  return left;
}

QueryBodyPtr finishUnion(Position position, QueryBodyPtr first, UnionQuery chain) {
  if (chain.rest.empty()) return first;
  chain.first = std::move(first);
  return makeBody(position, std::move(chain));
}

QueryBodyPtr parseUnion(Cursor& cursor, SelectPlace place) {
  const Position position = cursor.position();
  int count = 0;
  QueryBodyPtr first = parseIntersect(cursor, place, count);
  UnionQuery chain;
  for (;;) {
    if (cursor.accept("UNION")) {
      const bool all = cursor.accept("ALL");
      chain.rest.push_back({all, parseIntersect(cursor, SelectPlace::Inside, count)});
    } else if (cursor.accept("EXCEPT")) {
      countSetQuery(cursor, count);
      first = finishUnion(position, std::move(first), std::exchange(chain, {}));
      QueryBodyPtr right = parseIntersect(cursor, SelectPlace::Inside, count);
      first = makeBody(position, SetQuery{false, std::move(first), std::move(right)});
    } else {
      return finishUnion(position, std::move(first), std::move(chain));
    }
  }
}

// `option (maxrecursion 50)`: the one hint that changes an answer.
int parseMaxRecursion(Cursor& cursor) {
  cursor.expect("(");
  cursor.expect("MAXRECURSION");
  const Token token = cursor.peek();
  if (token.kind != TokenKind::Integer || token.text.size() > 5 ||
      std::stoi(std::string(token.text)) > 32767) {
    cursor.unexpected("a number from 0 to 32767");
  }
  cursor.next();
  cursor.expect(")");
  return std::stoi(std::string(token.text));
}

CommonTable parseCommonTable(Cursor& cursor) {
  CommonTable table;
  table.position = cursor.position();
  table.name = cursor.expectName();
  if (cursor.at("(")) table.columns = parseNameList(cursor);
  cursor.expect("AS");
  cursor.expect("(");
  table.query = parseQuery(cursor);
  cursor.expect(")");
  return table;
}

OrderItem parseOrderItem(Cursor& cursor) {
  OrderItem item{parseValue(cursor)};
  item.descending = cursor.accept("DESC");
  if (!item.descending) cursor.accept("ASC");
  return item;
}

QueryPtr parseQueryAt(Cursor& cursor, SelectPlace place) {
  const DepthGuard guard(cursor);
  auto query = std::make_unique<Query>();
  if (place == SelectPlace::Statement && cursor.accept("WITH")) {
    query->with = parseCommaList(cursor, parseCommonTable);
  }
  query->body = std::move(*parseUnion(cursor, place));
  if (cursor.acceptPhrase("ORDER BY")) query->orderBy = parseOrderItems(cursor);
  if (place == SelectPlace::Statement && cursor.accept("OPTION")) {
    query->maxRecursion = parseMaxRecursion(cursor);
  }
  return query;
}

bool isQueryParenthesis(const Cursor& cursor, std::size_t ahead, int depth) {
  if (!cursor.at("(", ahead)) return false;
  if (depth > kMaxDepth) return true;  // refused when it is parsed
  if (cursor.at("SELECT", ahead + 1)) return true;
  if (!isQueryParenthesis(cursor, ahead + 1, depth + 1)) return false;
  const std::size_t behind = cursor.closingAhead(ahead + 1) + 1;
  return cursor.at("UNION", behind) || cursor.at("EXCEPT", behind) ||
         cursor.at("INTERSECT", behind) || cursor.at(")", behind);
}

}  // namespace

QueryPtr parseQuery(Cursor& cursor) {
  return parseQueryAt(cursor, SelectPlace::Inside);
}

QueryPtr parseTopQuery(Cursor& cursor) {
  return parseQueryAt(cursor, SelectPlace::Statement);
}

bool isQueryParenthesis(const Cursor& cursor) {
  return isQueryParenthesis(cursor, 0, 0);
}

std::vector<SelectItem> parseOutputItems(Cursor& cursor) {
  return parseCommaList(
      cursor, [](Cursor& inside) { return parseSelectItem(inside, SelectPlace::Inside); });
}

std::vector<OrderItem> parseOrderItems(Cursor& cursor) {
  return parseCommaList(cursor, parseOrderItem);
}

}  // namespace velmora::tsql
