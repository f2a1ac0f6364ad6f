#include "platform/ado/duckdb/batch_runner.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <variant>

#include "platform/ado/duckdb/clock.h"
#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/rows.h"
#include "velmora/com/error.h"

namespace velmora::ado::embedded {

namespace {

/// The same error with the place of the statement, unless it names one already.
[[noreturn]] void throwAt(const com::Error& error, tsql::Position position) {
  auto text = error.description();
  if (text.find("(line ") == std::string::npos)
    text += " (line " + std::to_string(position.line) + ", column " +
            std::to_string(position.column) + ")";
  throw com::Error(error.number(), error.source(), std::move(text));
}

template <class Node>
constexpr bool kRunsItself =
    std::is_same_v<Node, tsql::BlockStatement> || std::is_same_v<Node, tsql::IfStatement> ||
    std::is_same_v<Node, tsql::DeclareStatement> ||
    std::is_same_v<Node, tsql::SetVariableStatement> ||
    std::is_same_v<Node, tsql::SetOptionStatement> ||
    std::is_same_v<Node, tsql::SetIsolationStatement> ||
    std::is_same_v<Node, tsql::PrintStatement> || std::is_same_v<Node, tsql::TransactionStatement>;

}  // namespace

BatchRunner::BatchRunner(SessionState& state, std::vector<tsql::Variable> parameters,
                         Observer observer)
    : state_(state), parameters_(std::move(parameters)), observer_(std::move(observer)) {}

std::vector<StatementResult> BatchRunner::run(const tsql::Batch& batch) {
  const auto wanted = static_cast<std::size_t>(batch.parameterCount);
  if (parameters_.size() != wanted)
    throwError("The batch has " + std::to_string(wanted) + " parameters; " +
               std::to_string(parameters_.size()) + " values were given.");
  declareAll(batch.statements);
  try {
    runAll(batch.statements);
  } catch (...) {
    state_.session.stopper().end();
    if (state_.transactions > 0) rollbackTransaction(state_);
    throw;
  }
  return std::move(results_);
}

// A variable is known in the whole batch, whether or not its DECLARE is ever reached.
void BatchRunner::declareAll(const std::vector<tsql::Statement>& statements) {
  for (const auto& statement : statements) declareAll(statement);
}

void BatchRunner::declareAll(const tsql::Statement& statement) {
  if (const auto* block = std::get_if<tsql::BlockStatement>(&statement.node)) {
    declareAll(block->statements);
  } else if (const auto* choice = std::get_if<tsql::IfStatement>(&statement.node)) {
    declareAll(*choice->then);
    if (choice->otherwise) declareAll(*choice->otherwise);
  } else if (const auto* declare = std::get_if<tsql::DeclareStatement>(&statement.node)) {
    for (const auto& declared : declare->variables)
      if (!variables_.try_emplace(declared.name, tsql::Variable{tsql::sqlType(declared.type)})
               .second)
        throwAt({com::error::kProvider, kSource,
                 "134: The variable name '" + declared.name + "' has already been declared."},
                declared.position);
  }
}

void BatchRunner::runAll(const std::vector<tsql::Statement>& statements) {
  for (const auto& statement : statements) run(statement);
}

void BatchRunner::run(const tsql::Statement& statement) {
  try {
    std::visit(
        [&](const auto& node) {
          if constexpr (kRunsItself<std::decay_t<decltype(node)>>) {
            execute(node);
          } else {
            const CatalogStatement turn(state_.catalog);
            const auto translation = tsql::translate(statement, scope());
            require(translation.functions);
            std::visit([&](const auto& action) { apply(action); }, translation.action);
          }
        },
        statement.node);
  } catch (const com::Error& error) {
    throwAt(error, statement.position);
  }
}

void BatchRunner::execute(const tsql::BlockStatement& block) {
  runAll(block.statements);
}

void BatchRunner::execute(const tsql::IfStatement& choice) {
  Variant met;
  {
    const CatalogStatement turn(state_.catalog);
    met = onlyCell(tsql::translateCondition(*choice.condition, scope()), tsql::SqlType::bit());
  }
  rowCount_ = 0;
  if (met.toBool())
    run(*choice.then);
  else if (choice.otherwise)
    run(*choice.otherwise);
}

void BatchRunner::execute(const tsql::DeclareStatement& declaration) {
  for (const auto& declared : declaration.variables)
    if (declared.value) set(declared.name, *declared.value);
}

void BatchRunner::execute(const tsql::SetVariableStatement& assignment) {
  set(assignment.name, *assignment.value);
  rowCount_ = 1;
}

void BatchRunner::execute(const tsql::SetOptionStatement& option) {
  if (std::ranges::find(option.options, "nocount") != option.options.end())
    state_.noCount = option.on;
}

/// Every level is met: a statement of the engine always sees one committed state.
void BatchRunner::execute(const tsql::SetIsolationStatement&) {}

/// There is no one to print to; an expression that fails fails the batch all the same.
void BatchRunner::execute(const tsql::PrintStatement& print) {
  evaluate(*print.value, tsql::SqlType::nvarchar(tsql::SqlType::kMaxLength));
}

void BatchRunner::execute(const tsql::TransactionStatement& transaction) {
  switch (transaction.action) {
    case tsql::TransactionAction::Begin:
      return beginTransaction(state_);
    case tsql::TransactionAction::Commit:
      return commitTransaction(state_);
    case tsql::TransactionAction::Rollback:
      return rollbackTransaction(state_);
  }
}

void BatchRunner::apply(const tsql::Rows& rows) {
  auto result = runNative(rows.sql);
  std::vector<tsql::SqlType> types;
  StatementResult answer;
  answer.hasRows = true;
  for (const auto& column : rows.columns) {
    types.push_back(column.type);
    answer.rows.fields.push_back(tsql::fieldDefinition(column.name, column.type, column.nullable));
  }
  answer.rows.cells = readCells(result, types);
  rowCount_ = static_cast<std::int64_t>(answer.rows.rowCount());
  results_.push_back(std::move(answer));
}

void BatchRunner::changed(std::int64_t rows) {
  rowCount_ = rows;
  if (state_.noCount) return;
  StatementResult answer;
  answer.recordsAffected = rows;
  results_.push_back(std::move(answer));
}

void BatchRunner::apply(const tsql::Change& change) {
  const auto rows = runNative(change.sql).rowsChanged();
  if (!change.identityTable.empty()) state_.catalog.identitiesUsed(change.identityTable, rows);
  if (!change.identityReset.empty()) state_.catalog.identitiesRestart(change.identityReset);
  changed(rows);
}

void BatchRunner::apply(const tsql::CreateTable& create) {
  auto statements = create.sql;
  if (!create.table.temporary)
    std::ranges::move(recordingSql(create.table), std::back_inserter(statements));
  runTogether(statements);
  state_.catalog.created(create.table);
}

void BatchRunner::apply(const tsql::SelectInto& into) {
  std::int64_t rows = 0;
  if (into.table.temporary) {
    rows = runNative(into.sql).rowsChanged();
  } else {
    const auto recording = recordingSql(into.table);
    beginTransaction(state_);
    rows = runNative(into.sql).rowsChanged();
    for (const auto& sql : recording) runNative(sql);
    commitTransaction(state_);
  }
  state_.catalog.created(into.table);
  changed(rows);
}

void BatchRunner::apply(const tsql::DropTables& drop) {
  runTogether(drop.sql);
  for (const auto& table : drop.tables) state_.catalog.dropped(table);
}

void BatchRunner::apply(const tsql::Assign& assign) {
  std::vector<tsql::SqlType> types;
  for (const auto& name : assign.variables) types.push_back(variable(name).type);
  auto result = runNative(assign.sql);
  const auto cells = readCells(result, types);
  rowCount_ = static_cast<std::int64_t>(cells.size() / types.size());
  if (cells.empty()) return;
  const auto last = cells.size() - types.size();
  for (std::size_t i = 0; i < types.size(); ++i)
    variable(assign.variables[i]).value = cells[last + i];
}

void BatchRunner::apply(const tsql::IndexChange& change) {
  auto statements = change.sql;
  if (change.table && !change.table->temporary)
    std::ranges::move(indexRecordingSql(*change.table), std::back_inserter(statements));
  runTogether(statements);
  if (change.table) state_.catalog.altered(*change.table);
}

tsql::Scope BatchRunner::scope() {
  return {state_.catalog, variables_, parameters_, now(), state_.readOnly, rowCount_};
}

Result BatchRunner::runNative(const std::string& sql) {
  observer_(sql);
  return state_.session.run(sql);
}

void BatchRunner::runTogether(std::span<const std::string> statements) {
  if (statements.size() <= 1) {
    for (const auto& sql : statements) runNative(sql);
    return;
  }
  beginTransaction(state_);
  for (const auto& sql : statements) runNative(sql);
  commitTransaction(state_);
}

void BatchRunner::require(const std::vector<tsql::DecimalFunction>& functions) {
  for (const auto& function : functions) state_.functions.require(function);
}

Variant BatchRunner::evaluate(const tsql::Expression& value, const tsql::SqlType& type) {
  const CatalogStatement turn(state_.catalog);
  return onlyCell(tsql::translateValue(value, type, scope()), type);
}

Variant BatchRunner::onlyCell(const tsql::Translation& translation, const tsql::SqlType& type) {
  require(translation.functions);
  auto result = runNative(std::get<tsql::Rows>(translation.action).sql);
  const auto cells = readCells(result, std::array{type});
  return cells.at(0);
}

void BatchRunner::set(const std::string& name, const tsql::Expression& value) {
  auto& target = variable(name);
  target.value = evaluate(value, target.type);
}

tsql::Variable& BatchRunner::variable(const std::string& name) {
  const auto found = variables_.find(name);
  if (found == variables_.end())
    throwError("137: Must declare the scalar variable \"" + name + "\".");
  return found->second;
}

}  // namespace velmora::ado::embedded
