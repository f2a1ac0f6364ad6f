#include <charconv>

#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"

namespace velmora::tsql {
namespace {

// Columns and keys ------------------------------------------------------------------------------

long long parseIdentityNumber(Cursor& cursor) {
  const bool negative = cursor.accept("-");
  const Token& token = cursor.peek();
  if (token.kind != TokenKind::Integer) cursor.unexpected("a whole number");
  long long number = 0;
  const char* end = token.text.data() + token.text.size();
  if (std::from_chars(token.text.data(), end, number).ec != std::errc()) {
    cursor.unexpected("a number of at most 18 digits");
  }
  cursor.next();
  return negative ? -number : number;
}

Identity parseIdentity(Cursor& cursor) {
  Identity identity;
  if (cursor.accept("(")) {
    identity.seed = parseIdentityNumber(cursor);
    cursor.expect(",");
    identity.increment = parseIdentityNumber(cursor);
    cursor.expect(")");
  }
  return identity;
}

void skipClustering(Cursor& cursor) {
  if (!cursor.accept("CLUSTERED")) cursor.accept("NONCLUSTERED");
}

void skipConstraintName(Cursor& cursor) {
  if (cursor.accept("CONSTRAINT")) cursor.expectName();
}

// `on [primary]`: where the server would store it.
void skipFileGroup(Cursor& cursor) {
  if (cursor.accept("ON")) cursor.expectName();
}

IndexColumn parseIndexColumn(Cursor& cursor) {
  IndexColumn column{cursor.expectName()};
  column.descending = cursor.accept("DESC");
  if (!column.descending) cursor.accept("ASC");
  return column;
}

std::vector<IndexColumn> parseIndexColumns(Cursor& cursor) {
  cursor.expect("(");
  auto columns = parseCommaList(cursor, parseIndexColumn);
  cursor.expect(")");
  return columns;
}

bool acceptNullability(Cursor& cursor, ColumnDefinition& column) {
  if (cursor.accept("NULL")) {
    column.nullable = true;
  } else if (cursor.accept("NOT")) {
    cursor.expect("NULL");
    column.nullable = false;
  } else {
    return false;
  }
  return true;
}

bool acceptKey(Cursor& cursor, ColumnDefinition& column) {
  if (cursor.acceptPhrase("PRIMARY KEY")) {
    column.primaryKey = true;
  } else if (cursor.accept("UNIQUE")) {
    column.unique = true;
  } else {
    return false;
  }
  skipClustering(cursor);
  return true;
}

ExpressionPtr parseCheck(Cursor& cursor) {
  cursor.expect("(");
  ExpressionPtr condition = parseCondition(cursor);
  cursor.expect(")");
  return condition;
}

bool acceptColumnOption(Cursor& cursor, ColumnDefinition& column) {
  if (cursor.accept("IDENTITY")) {
    column.identity = parseIdentity(cursor);
  } else if (cursor.accept("DEFAULT")) {
    column.defaultValue = parseValue(cursor);
  } else if (cursor.accept("CHECK")) {
    column.checks.push_back(parseCheck(cursor));
  } else if (cursor.at("COLLATE")) {
    parseCollation(cursor);
  } else {
    return acceptNullability(cursor, column) || acceptKey(cursor, column);
  }
  return true;
}

void parseColumnOptions(Cursor& cursor, ColumnDefinition& column) {
  for (;;) {
    const bool named = cursor.at("CONSTRAINT");
    skipConstraintName(cursor);
    if (acceptColumnOption(cursor, column)) continue;
    if (named) cursor.unexpected();
    return;
  }
}

ColumnDefinition parseColumn(Cursor& cursor) {
  ColumnDefinition column;
  column.position = cursor.position();
  column.name = cursor.expectName();
  if (cursor.accept("AS")) {
    column.computed = parseValue(cursor);
    cursor.accept("PERSISTED");
    return column;
  }
  column.type = parseType(cursor);
  parseColumnOptions(cursor, column);
  return column;
}

void parseConstraint(Cursor& cursor, CreateTableStatement& create) {
  KeyConstraint key;
  key.position = cursor.position();
  skipConstraintName(cursor);
  if (cursor.accept("CHECK")) {
    create.checks.push_back(parseCheck(cursor));
    return;
  }
  key.primary = cursor.acceptPhrase("PRIMARY KEY");
  if (!key.primary) cursor.expect("UNIQUE");
  skipClustering(cursor);
  key.columns = parseIndexColumns(cursor);
  create.keys.push_back(std::move(key));
}

bool atConstraint(const Cursor& cursor) {
  return cursor.at("CONSTRAINT") || cursor.at("PRIMARY") || cursor.at("UNIQUE") ||
         cursor.at("CHECK");
}

// CREATE ----------------------------------------------------------------------------------------

StatementNode parseCreateTable(Cursor& cursor) {
  CreateTableStatement create;
  create.table = parseQualifiedName(cursor);
  parseTableBody(cursor, create);
  skipFileGroup(cursor);
  return create;
}

StatementNode parseCreateIndex(Cursor& cursor, bool unique) {
  CreateIndexStatement create;
  create.unique = unique;
  create.name = cursor.expectName();
  cursor.expect("ON");
  create.table = parseQualifiedName(cursor);
  create.columns = parseIndexColumns(cursor);
  skipFileGroup(cursor);
  return create;
}

StatementNode parseCreateView(Cursor& cursor) {
  CreateViewStatement create;
  create.view = parseQualifiedName(cursor);
  if (cursor.at("(")) create.columns = parseNameList(cursor);
  cursor.expect("AS");
  create.query = parseQuery(cursor);
  return create;
}

// DROP ------------------------------------------------------------------------------------------

StatementNode parseDropTable(Cursor& cursor) {
  const bool ifExists = cursor.acceptPhrase("IF EXISTS");
  return DropTableStatement{parseCommaList(cursor, parseQualifiedName), ifExists};
}

StatementNode parseDropView(Cursor& cursor) {
  const bool ifExists = cursor.acceptPhrase("IF EXISTS");
  return DropViewStatement{parseCommaList(cursor, parseQualifiedName), ifExists};
}

// `drop index name on table`, `drop index table.name`.
StatementNode parseDropIndex(Cursor& cursor) {
  DropIndexStatement drop;
  drop.ifExists = cursor.acceptPhrase("IF EXISTS");
  QualifiedName name = parseQualifiedName(cursor);
  drop.name = std::move(name.name);
  if (name.qualifiers.empty()) {
    cursor.expect("ON");
    drop.table = parseQualifiedName(cursor);
  } else {
    name.name = std::move(name.qualifiers.back());
    name.qualifiers.pop_back();
    drop.table = std::move(name);
  }
  return drop;
}

}  // namespace

StatementNode parseCreate(Cursor& cursor) {
  cursor.expect("CREATE");
  if (cursor.accept("TABLE")) return parseCreateTable(cursor);
  if (cursor.accept("VIEW")) return parseCreateView(cursor);
  const bool unique = cursor.accept("UNIQUE");
  skipClustering(cursor);
  cursor.expect("INDEX");
  return parseCreateIndex(cursor, unique);
}

void parseTableBody(Cursor& cursor, CreateTableStatement& create) {
  cursor.expect("(");
  do {
    if (atConstraint(cursor)) {
      parseConstraint(cursor, create);
    } else {
      create.columns.push_back(parseColumn(cursor));
    }
  } while (cursor.accept(","));
  cursor.expect(")");
}

StatementNode parseAlter(Cursor& cursor) {
  AlterTableStatement alter;
  cursor.expect("ALTER");
  cursor.expect("TABLE");
  alter.table = parseQualifiedName(cursor);
  if (cursor.accept("DROP")) {
    cursor.expect("COLUMN");
    alter.dropped = parseCommaList(cursor, parseQualifiedName);
  } else {
    cursor.expect("ADD");
    alter.added = parseCommaList(cursor, parseColumn);
  }
  return alter;
}

StatementNode parseDrop(Cursor& cursor) {
  cursor.expect("DROP");
  if (cursor.accept("TABLE")) return parseDropTable(cursor);
  if (cursor.accept("VIEW")) return parseDropView(cursor);
  cursor.expect("INDEX");
  return parseDropIndex(cursor);
}

}  // namespace velmora::tsql
