#include <algorithm>
#include <array>

#include "platform/tsql/syntax/parser_parts.h"
#include "platform/tsql/syntax/syntax_error.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

// Session options, and the one value that the embedded database keeps to where the other
// would change answers.
enum class Allowed { Both, OnlyOn, OnlyOff };

struct SessionOption {
  std::string_view name;
  Allowed allowed;
};

constexpr auto kOptions = std::to_array<SessionOption>({
    {"nocount", Allowed::Both},
    {"ansi_nulls", Allowed::OnlyOn},
    {"ansi_padding", Allowed::OnlyOn},
    {"ansi_warnings", Allowed::OnlyOn},
    {"ansi_null_dflt_on", Allowed::OnlyOn},
    {"ansi_defaults", Allowed::OnlyOn},
    {"arithabort", Allowed::OnlyOn},
    {"arithignore", Allowed::OnlyOff},
    {"concat_null_yields_null", Allowed::OnlyOn},
    {"quoted_identifier", Allowed::OnlyOn},
    {"numeric_roundabort", Allowed::OnlyOff},
    {"implicit_transactions", Allowed::OnlyOff},
    {"xact_abort", Allowed::Both},
});

struct IsolationLevel {
  std::string_view first;
  std::string_view second;  // empty for a level of one word
};

constexpr auto kLevels = std::to_array<IsolationLevel>({{"READ", "COMMITTED"},
                                                        {"READ", "UNCOMMITTED"},
                                                        {"REPEATABLE", "READ"},
                                                        {"SERIALIZABLE", ""},
                                                        {"SNAPSHOT", ""}});

StatementNode parseIsolation(Cursor& cursor) {
  cursor.expect("ISOLATION");
  cursor.expect("LEVEL");
  for (const IsolationLevel& level : kLevels) {
    if (!cursor.at(level.first) || !(level.second.empty() || cursor.at(level.second, 1))) continue;
    cursor.next();
    if (level.second.empty()) return SetIsolationStatement{lowered(level.first)};
    cursor.next();
    return SetIsolationStatement{lowered(level.first) + " " + lowered(level.second)};
  }
  cursor.unexpected("READ COMMITTED, READ UNCOMMITTED, REPEATABLE READ, SERIALIZABLE or SNAPSHOT");
}

const SessionOption& parseOption(Cursor& cursor) {
  const auto* found = std::find_if(kOptions.begin(), kOptions.end(),
                                   [&](const SessionOption& o) { return cursor.at(o.name); });
  if (found == kOptions.end()) cursor.unexpected("an option such as NOCOUNT");
  cursor.next();
  return *found;
}

StatementNode parseOptions(Cursor& cursor) {
  SetOptionStatement set;
  Allowed allowed = Allowed::Both;
  do {
    const SessionOption& option = parseOption(cursor);
    if (option.allowed != Allowed::Both) allowed = option.allowed;
    set.options.emplace_back(option.name);
  } while (cursor.accept(","));
  set.on = allowed != Allowed::OnlyOff && cursor.accept("ON");
  if (!set.on && (allowed == Allowed::OnlyOn || !cursor.accept("OFF"))) cursor.unexpected();
  return set;
}

void parseDeclaration(Cursor& cursor, DeclareStatement& declare) {
  VariableDeclaration declaration;
  declaration.position = cursor.position();
  declaration.name = parseVariableName(cursor);
  cursor.accept("AS");
  if (cursor.accept("TABLE")) {
    CreateTableStatement table;
    table.table = {declaration.position, {}, declaration.name};
    parseTableBody(cursor, table);
    declare.tables.push_back(std::move(table));
    return;
  }
  declaration.type = parseType(cursor);
  if (cursor.accept("=")) declaration.value = parseValue(cursor);
  declare.variables.push_back(std::move(declaration));
}

}  // namespace

StatementNode parseDeclare(Cursor& cursor) {
  cursor.expect("DECLARE");
  DeclareStatement declare;
  do {
    parseDeclaration(cursor, declare);
  } while (cursor.accept(","));
  return declare;
}

StatementNode parseSet(Cursor& cursor) {
  cursor.expect("SET");
  if (cursor.peek().kind == TokenKind::Variable) {
    SetVariableStatement set{parseVariableName(cursor), nullptr};
    cursor.expect("=");
    set.value = parseValue(cursor);
    return set;
  }
  cursor.want("a @variable");
  if (cursor.accept("TRANSACTION")) return parseIsolation(cursor);
  return parseOptions(cursor);
}

}  // namespace velmora::tsql
