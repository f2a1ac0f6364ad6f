// The parser and the translation of T-SQL.

#include "common/fuzz.h"
#include "common/tsql_tables.h"
#include "platform/tsql/syntax/parser.h"
#include "platform/tsql/syntax/print.h"
#include "platform/tsql/translate.h"
#include "tsql_translate/fake_catalog.h"
#include "velmora/com/error.h"

namespace velmora::fuzz {
namespace {

using namespace tsql;

/// Translates statement by statement as a run does; every branch of an IF is taken.
class Walk {
 public:
  explicit Walk(std::string_view input) : input_(input), tables_(sharedTables()) {
    tables_.variables.clear();
  }
  ~Walk() {
    if (created_) sharedTables() = test::Translator(kTables);
  }
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;

  void statement(const Statement& each) {
    try {
      std::visit([&](const auto& node) { take(each, node); }, each.node);
    } catch (const com::Error& error) {
      // The place of the statement is added where it is run.
      const std::string& text = error.description();
      requireSqlError(
          text.find("(line ") == std::string::npos ? text + " (line 1, column 1)" : text, input_);
    }
  }

 private:
  void take(const Statement&, const BlockStatement& block) {
    for (const Statement& inner : block.statements) statement(inner);
  }
  void take(const Statement&, const IfStatement& choice) {
    statement(*choice.then);
    if (choice.otherwise) statement(*choice.otherwise);
    translateCondition(*choice.condition, tables_.scope());
  }
  void take(const Statement&, const WhileStatement& loop) {
    statement(*loop.body);
    translateCondition(*loop.condition, tables_.scope());
  }
  void take(const Statement&, const BreakStatement&) {}
  void take(const Statement&, const ContinueStatement&) {}
  void take(const Statement&, const DeclareStatement& declaration) {
    for (const CreateTableStatement& each : declaration.tables)
      add(translateTableVariable(each, tables_.scope()).action);
    for (const VariableDeclaration& each : declaration.variables)
      tables_.variables[each.name] = Variable{sqlType(each.type)};
  }
  void take(const Statement&, const SetVariableStatement& set) {
    const auto variable = tables_.variables.find(set.name);
    if (variable != tables_.variables.end())
      translateValue(*set.value, variable->second.type, tables_.scope());
  }
  void take(const Statement&, const PrintStatement&) {}
  void take(const Statement&, const TransactionStatement&) {}
  void take(const Statement&, const SetOptionStatement&) {}
  void take(const Statement&, const SetIsolationStatement&) {}
  template <class Node>
  void take(const Statement& whole, const Node&) {
    add(translate(whole, tables_.scope()).action);
  }

  void add(const Action& action) {
    if (const auto* created = std::get_if<CreateTable>(&action)) {
      created_ = true;
      tables_.catalog.add(created->table);
    }
  }

  static test::Translator& sharedTables() {
    static test::Translator tables(kTables);
    return tables;
  }

  std::string_view input_;
  test::Translator& tables_;
  bool created_ = false;
};

}  // namespace

void run(std::string_view input) {
  Batch batch;
  try {
    batch = parse(input);
  } catch (const com::Error& error) {
    requireSqlError(error.description(), input);
    return;
  }
  const std::string printed = print(batch);
  try {
    require(print(parse(printed)) == printed, "printing is not stable", printed);
  } catch (const com::Error& error) {
    require(false, "what was printed cannot be parsed", error.description() + "\n" + printed);
  }
  Walk walk(input);
  for (const Statement& statement : batch.statements) walk.statement(statement);
}

}  // namespace velmora::fuzz
