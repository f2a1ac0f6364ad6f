#include <algorithm>
#include <array>

#include "platform/tsql/syntax/limits.h"
#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"

namespace velmora::tsql {
namespace {

// Locking hints; none changes an answer where a connection sees only finished changes.
constexpr auto kHints = std::to_array<std::string_view>(
    {"NOLOCK", "READUNCOMMITTED", "READCOMMITTED", "REPEATABLEREAD", "SERIALIZABLE", "HOLDLOCK",
     "ROWLOCK", "PAGLOCK", "TABLOCK", "TABLOCKX", "UPDLOCK", "XLOCK"});

class FromParser {
 public:
  explicit FromParser(Cursor& cursor) : cursor_(cursor) {}

  TableSourcePtr parseSource() { return parseJoins(parsePrimary()); }

 private:
  TableSourcePtr parsePrimary();
  TableSourcePtr parseJoins(TableSourcePtr left);
  TableSourcePtr parseJoin(TableSourcePtr left, JoinKind kind, Position position);
  TableSourcePtr parseDerivedTable();
  TableSourcePtr parseValuesTable();
  TableSourcePtr parseNamedTable();
  TableSourcePtr parseJoinParenthesis();
  std::optional<std::string> parseAlias();
  std::optional<JoinKind> acceptJoin();
  bool atJoin() const;
  bool atHint(std::size_t ahead) const;
  void skipHints();
  void countTable();

  Cursor& cursor_;
  int tables_ = 0;
};

TableSourcePtr makeSource(Position position, decltype(TableSource::node) node) {
  return std::make_unique<TableSource>(TableSource{position, std::move(node)});
}

void FromParser::countTable() {
  if (++tables_ > kMaxTables) {
    throw SyntaxError(cursor_.position(),
                      "more than " + std::to_string(kMaxTables) + " tables in one FROM");
  }
}

TableSourcePtr FromParser::parsePrimary() {
  countTable();
  if (!cursor_.at("(")) return parseNamedTable();
  if (cursor_.at("VALUES", 1)) return parseValuesTable();
  return isQueryParenthesis(cursor_) ? parseDerivedTable() : parseJoinParenthesis();
}

TableSourcePtr FromParser::parseJoinParenthesis() {
  const DepthGuard guard(cursor_);
  cursor_.expect("(");
  TableSourcePtr inside = parseSource();
  cursor_.expect(")");
  return inside;
}

TableSourcePtr FromParser::parseDerivedTable() {
  const Position position = cursor_.position();
  DerivedTable table;
  cursor_.expect("(");
  table.query = parseQuery(cursor_);
  cursor_.expect(")");
  cursor_.accept("AS");
  table.alias = cursor_.expectName();
  if (cursor_.at("(")) table.columns = parseNameList(cursor_);
  return makeSource(position, std::move(table));
}

// `(a, b)` of VALUES as a select without FROM.
QueryBodyPtr parseValuesRow(Cursor& cursor) {
  const Position position = cursor.position();
  Select row;
  cursor.expect("(");
  for (ExpressionPtr& value : parseValueList(cursor)) {
    const Position place = value->position;
    SelectItem& item = row.items.emplace_back();
    item.position = place;
    item.node.emplace<ColumnItem>().value = std::move(value);
  }
  cursor.expect(")");
  return std::make_unique<QueryBody>(QueryBody{position, std::move(row)});
}

// `(values (1, 'a'), (2, 'b')) as t (x, y)`: its rows are branches of a union.
TableSourcePtr FromParser::parseValuesTable() {
  const Position position = cursor_.position();
  DerivedTable table;
  cursor_.expect("(");
  cursor_.expect("VALUES");
  auto rows = parseCommaList(cursor_, parseValuesRow);
  cursor_.expect(")");
  table.query = std::make_unique<Query>();
  if (rows.size() == 1) {
    table.query->body = std::move(*rows.front());
  } else {
    UnionQuery chain{std::move(rows.front()), {}};
    for (std::size_t i = 1; i < rows.size(); ++i) chain.rest.push_back({true, std::move(rows[i])});
    table.query->body = QueryBody{position, std::move(chain)};
  }
  cursor_.accept("AS");
  table.alias = cursor_.expectName();
  table.columns = parseNameList(cursor_);
  return makeSource(position, std::move(table));
}

TableSourcePtr FromParser::parseNamedTable() {
  const Position position = cursor_.position();
  NamedTable table;
  table.name = parseTableName(cursor_);
  skipHints();
  table.alias = parseAlias();
  skipHints();
  return makeSource(position, std::move(table));
}

std::optional<std::string> FromParser::parseAlias() {
  if (cursor_.accept("AS") || cursor_.atName()) return cursor_.expectName();
  cursor_.want("a name");
  return std::nullopt;
}

bool FromParser::atHint(std::size_t ahead) const {
  return std::any_of(kHints.begin(), kHints.end(),
                     [&](std::string_view hint) { return cursor_.at(hint, ahead); });
}

// `with (nolock, rowlock)`, and `(nolock)` as it was once written.
void FromParser::skipHints() {
  const bool with = cursor_.at("WITH") && cursor_.at("(", 1);
  if (!with && !(cursor_.at("(") && atHint(1))) return;
  if (with) cursor_.next();
  cursor_.expect("(");
  do {
    if (!atHint(0)) cursor_.unexpected("a locking hint such as NOLOCK");
    cursor_.next();
  } while (cursor_.accept(","));
  cursor_.expect(")");
}

bool FromParser::atJoin() const {
  constexpr auto kStarts =
      std::to_array<std::string_view>({"JOIN", "INNER", "LEFT", "RIGHT", "FULL", "CROSS"});
  return std::any_of(kStarts.begin(), kStarts.end(),
                     [this](std::string_view word) { return cursor_.at(word); });
}

std::optional<JoinKind> FromParser::acceptJoin() {
  if (!atJoin()) {
    cursor_.want("JOIN");
    return std::nullopt;
  }
  JoinKind kind = JoinKind::Inner;
  if (cursor_.accept("CROSS")) {
    kind = JoinKind::Cross;
  } else if (!cursor_.accept("INNER") && !cursor_.at("JOIN")) {
    kind = cursor_.at("LEFT")    ? JoinKind::Left
           : cursor_.at("RIGHT") ? JoinKind::Right
                                 : JoinKind::Full;
    cursor_.next();
    cursor_.accept("OUTER");
  }
  cursor_.expect("JOIN");
  return kind;
}

TableSourcePtr FromParser::parseJoins(TableSourcePtr left) {
  for (;;) {
    const Position position = cursor_.position();
    const std::optional<JoinKind> kind = acceptJoin();
    if (!kind) return left;
    left = parseJoin(std::move(left), *kind, position);
  }
}

TableSourcePtr FromParser::parseJoin(TableSourcePtr left, JoinKind kind, Position position) {
  Join join{kind, std::move(left), parsePrimary(), nullptr};
  if (kind != JoinKind::Cross) {
    // `a join b join c on ... on ...`: the inner join comes before this one's ON.
    if (atJoin()) {
      const DepthGuard guard(cursor_);
      join.right = parseJoins(std::move(join.right));
    }
    cursor_.expect("ON");
    join.on = parseCondition(cursor_);
  }
  return makeSource(position, std::move(join));
}

}  // namespace

std::vector<TableSourcePtr> parseFrom(Cursor& cursor) {
  FromParser parser(cursor);
  return parseCommaList(cursor, [&parser](Cursor&) { return parser.parseSource(); });
}

}  // namespace velmora::tsql
