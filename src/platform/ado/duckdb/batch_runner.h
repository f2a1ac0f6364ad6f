#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/ado/duckdb/session_state.h"
#include "platform/tsql/translate.h"
#include "velmora/ado/rowset.h"

namespace velmora::ado::embedded {

/// Runs one parsed batch, statement by statement; names are resolved when a statement's
/// turn comes. A statement that fails ends the batch and rolls back the transaction it
/// is in.
class BatchRunner {
 public:
  /// Sees every engine statement before it runs.
  using Observer = std::function<void(const std::string&)>;

  BatchRunner(SessionState& state, std::vector<tsql::Variable> parameters, Observer observer);

  std::vector<StatementResult> run(const tsql::Batch& batch);

 private:
  void declareAll(const std::vector<tsql::Statement>& statements, bool inLoop);
  void declareAll(const tsql::Statement& statement, bool inLoop);
  void runAll(const std::vector<tsql::Statement>& statements);
  void run(const tsql::Statement& statement);

  // Flow, variables, options; everything else is translated.
  void execute(const tsql::BlockStatement& block);
  void execute(const tsql::IfStatement& choice);
  void execute(const tsql::DeclareStatement& declaration);
  void execute(const tsql::SetVariableStatement& assignment);
  void execute(const tsql::SetOptionStatement& option);
  void execute(const tsql::SetIsolationStatement& isolation);
  void execute(const tsql::WhileStatement& loop);
  void execute(const tsql::BreakStatement&) { leaving_ = Leaving::loop; }
  void execute(const tsql::ContinueStatement&) { leaving_ = Leaving::round; }
  void execute(const tsql::PrintStatement& print);
  void execute(const tsql::TransactionStatement& transaction);

  void apply(const tsql::Rows& rows);
  void apply(const tsql::Change& change);
  void apply(const tsql::CreateTable& create);
  void apply(const tsql::SelectInto& into);
  void apply(const tsql::DropTables& drop);
  void apply(const tsql::Assign& assign);
  void apply(const tsql::IndexChange& change);
  void apply(const tsql::AlterTable& alter);

  tsql::Scope scope();
  Result runNative(const std::string& sql);
  /// Runs all or none.
  void runRecorded(std::vector<std::string> statements, const tsql::TableInfo& table);
  void runTogether(std::span<const std::string> statements);
  Variant evaluate(const tsql::Expression& value, const tsql::SqlType& type);
  Variant onlyCell(const tsql::Translation& translation, const tsql::SqlType& type);
  void set(const std::string& variable, const tsql::Expression& value);
  tsql::Variable& variable(const std::string& name);
  void require(const std::vector<tsql::DecimalFunction>& functions);
  void changed(std::int64_t rows);
  bool isMet(const tsql::Expression& condition);
  void runChange(const tsql::Change& change);
  std::int64_t runOutput(const tsql::Rows& rows, const std::string& sql);
  void noteIdentities(const tsql::Change& change, std::int64_t rows);
  void dropTableVariables();
  /// After an error.
  void giveUp();

  SessionState& state_;
  std::vector<tsql::Variable> parameters_;
  Observer observer_;
  tsql::Variables variables_;
  std::vector<StatementResult> results_;
  std::int64_t rowCount_ = 0;
  std::vector<std::string> tableVariables_;
  /// BREAK or CONTINUE on the way to its loop.
  enum class Leaving { nothing, round, loop };
  Leaving leaving_ = Leaving::nothing;
};

}  // namespace velmora::ado::embedded
