#include "platform/ado/duckdb/batch_runner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <type_traits>
#include <utility>
#include <variant>

#include "platform/ado/duckdb/clock.h"
#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/identity_counters.h"
#include "platform/ado/duckdb/rows.h"
#include "platform/ado/duckdb/table_declarations.h"
#include "platform/tsql/engine/sql_text.h"
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

/// SQL Server's number at the head of the text; 50000 where there is none.
int errorNumber(const com::Error& error) {
  const auto& text = error.description();
  int number = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  return failed == std::errc() && end != text.data() + text.size() && *end == ':' ? number : 50000;
}

template <class Node>
constexpr bool kRunsItself =
    std::is_same_v<Node, tsql::BlockStatement> || std::is_same_v<Node, tsql::IfStatement> ||
    std::is_same_v<Node, tsql::WhileStatement> || std::is_same_v<Node, tsql::BreakStatement> ||
    std::is_same_v<Node, tsql::ContinueStatement> || std::is_same_v<Node, tsql::DeclareStatement> ||
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
  declareAll(batch.statements, false);
  try {
    runAll(batch.statements);
  } catch (const com::Error& error) {
    giveUp();
    state_.lastError = errorNumber(error);
    throw;
  } catch (...) {
    giveUp();
    throw;
  }
  dropTableVariables();
  return std::move(results_);
}

void BatchRunner::giveUp() {
  state_.session.stopper().end();
  if (state_.transactions > 0) rollbackTransaction(state_);
  dropTableVariables();
}

// A variable is known in the whole batch, whether or not its DECLARE is ever reached.
// BREAK and CONTINUE are refused here where no loop is around them.
void BatchRunner::declareAll(const std::vector<tsql::Statement>& statements, bool inLoop) {
  for (const auto& statement : statements) declareAll(statement, inLoop);
}

void BatchRunner::declareAll(const tsql::Statement& statement, bool inLoop) {
  if (const auto* block = std::get_if<tsql::BlockStatement>(&statement.node)) {
    declareAll(block->statements, inLoop);
  } else if (const auto* choice = std::get_if<tsql::IfStatement>(&statement.node)) {
    declareAll(*choice->then, inLoop);
    if (choice->otherwise) declareAll(*choice->otherwise, inLoop);
  } else if (const auto* loop = std::get_if<tsql::WhileStatement>(&statement.node)) {
    declareAll(*loop->body, true);
  } else if (!inLoop && std::holds_alternative<tsql::BreakStatement>(statement.node)) {
    throwAt({com::error::kProvider, kSource,
             "135: Cannot use a BREAK statement outside the scope of a WHILE statement."},
            statement.position);
  } else if (!inLoop && std::holds_alternative<tsql::ContinueStatement>(statement.node)) {
    throwAt({com::error::kProvider, kSource,
             "136: Cannot use a CONTINUE statement outside the scope of a WHILE statement."},
            statement.position);
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
  for (const auto& statement : statements) {
    run(statement);
    if (leaving_ != Leaving::nothing) return;
  }
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
    state_.lastError = 0;
  } catch (const com::Error& error) {
    throwAt(error, statement.position);
  }
}

void BatchRunner::execute(const tsql::BlockStatement& block) {
  runAll(block.statements);
}

/// A condition that is looked at leaves no count of rows and no error behind.
bool BatchRunner::isMet(const tsql::Expression& condition) {
  const CatalogStatement turn(state_.catalog);
  const auto met = onlyCell(tsql::translateCondition(condition, scope()), tsql::SqlType::bit());
  rowCount_ = 0;
  state_.lastError = 0;
  return met.toBool();
}

void BatchRunner::execute(const tsql::WhileStatement& loop) {
  while (isMet(*loop.condition)) {
    run(*loop.body);
    const bool left = leaving_ == Leaving::loop;
    leaving_ = Leaving::nothing;
    if (left) return;
  }
}

void BatchRunner::execute(const tsql::IfStatement& choice) {
  if (isMet(*choice.condition))
    run(*choice.then);
  else if (choice.otherwise)
    run(*choice.otherwise);
}

void BatchRunner::execute(const tsql::DeclareStatement& declaration) {
  for (const auto& declared : declaration.variables)
    if (declared.value) {
      set(declared.name, *declared.value);
      rowCount_ = 1;
    }
  // A loop that comes back to it finds the table as it is.
  for (const auto& declared : declaration.tables) {
    if (state_.catalog.findTable(declared.table.name) != nullptr) continue;
    const CatalogStatement turn(state_.catalog);
    const auto translation = tsql::translateTableVariable(declared, scope());
    require(translation.functions);
    apply(std::get<tsql::CreateTable>(translation.action));
    tableVariables_.push_back(declared.table.name);
  }
}

void BatchRunner::dropTableVariables() {
  for (const auto& name : std::exchange(tableVariables_, {})) {
    if (state_.catalog.findTable(name) == nullptr) continue;
    runNative("DROP TABLE " + tsql::engineTableName(name));
    state_.catalog.dropped(name);
  }
}

void BatchRunner::execute(const tsql::SetVariableStatement& assignment) {
  set(assignment.name, *assignment.value);
  rowCount_ = 1;
}

void BatchRunner::execute(const tsql::SetOptionStatement& option) {
  if (std::ranges::find(option.options, "nocount") != option.options.end())
    state_.noCount = option.on;
  rowCount_ = 0;
}

/// Every level is met: a statement of the engine always sees one committed state.
void BatchRunner::execute(const tsql::SetIsolationStatement&) {
  rowCount_ = 0;
}

/// There is no one to print to; an expression that fails fails the batch all the same.
void BatchRunner::execute(const tsql::PrintStatement& print) {
  evaluate(*print.value, tsql::SqlType::nvarchar(tsql::SqlType::kMaxLength));
  rowCount_ = 0;
}

void BatchRunner::execute(const tsql::TransactionStatement& transaction) {
  rowCount_ = 0;
  // The server keeps what a table variable holds; here it would go with the rest.
  if (transaction.action == tsql::TransactionAction::Rollback && !tableVariables_.empty())
    throwError("Not supported: ROLLBACK in a batch that declares table variables.");
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
  rowCount_ = runOutput(rows, rows.sql);
}

std::int64_t BatchRunner::runOutput(const tsql::Rows& rows, const std::string& sql) {
  auto result = runNative(sql);
  std::vector<tsql::SqlType> types;
  StatementResult answer;
  answer.hasRows = true;
  for (const auto& column : rows.columns) {
    types.push_back(column.type);
    answer.rows.fields.push_back(tsql::fieldDefinition(column.name, column.type, column.nullable));
  }
  answer.rows.cells = readCells(result, types);
  const auto count = static_cast<std::int64_t>(answer.rows.rowCount());
  results_.push_back(std::move(answer));
  return count;
}

void BatchRunner::changed(std::int64_t rows) {
  rowCount_ = rows;
  if (state_.noCount) return;
  StatementResult answer;
  answer.recordsAffected = rows;
  results_.push_back(std::move(answer));
}

namespace {

/// The same error; a key that only CREATE INDEX made unique has its own number.
[[noreturn]] void throwDuplicate(const com::Error& error, const tsql::TableInfo* table) {
  const auto isConstraint = [](const tsql::UniqueIndex& index) {
    return index.name.starts_with("key") &&
           index.name.find_first_not_of("0123456789", 3) == std::string::npos;
  };
  auto text = error.description();
  if (table == nullptr || table->uniqueIndexes.empty() || !text.starts_with("2627:") ||
      std::ranges::any_of(table->uniqueIndexes, isConstraint))
    throw error;
  const auto* numbered = identityColumn(*table);
  const bool keyed = !table->primaryKey.empty() &&
                     (numbered == nullptr || table->primaryKey != std::vector{numbered->name});
  if (keyed) throw error;
  throwError("2601: Cannot insert duplicate key row in object '" + table->name +
             "' with a unique index.");
}

}  // namespace

void BatchRunner::apply(const tsql::Change& change) {
  try {
    runChange(change);
  } catch (const com::Error& error) {
    throwDuplicate(error, state_.catalog.findTable(change.table));
  }
}

void BatchRunner::runChange(const tsql::Change& change) {
  const auto rows =
      change.output ? runOutput(*change.output, change.sql) : runNative(change.sql).rowsChanged();
  noteIdentities(change, rows);
  if (change.output) {
    rowCount_ = rows;
  } else {
    changed(rows);
  }
  if (!change.counted) rowCount_ = 0;
}

void BatchRunner::noteIdentities(const tsql::Change& change, std::int64_t rows) {
  if (change.insert) state_.lastIdentity.reset();
  if (!change.identityTable.empty()) {
    const auto& table = *state_.catalog.findTable(change.identityTable);
    const auto first = state_.catalog.nextIdentity(table);
    state_.catalog.identitiesUsed(change.identityTable, rows);
    if (rows > 0) {
      state_.lastIdentity = first + (rows - 1) * identityColumn(table)->identity->increment;
      state_.scopeIdentity = state_.lastIdentity;
    }
  }
  if (!change.identityReset.empty()) state_.catalog.identitiesRestart(change.identityReset);
}

/// Statements that define a table, and what a file keeps of it beside its rows.
void BatchRunner::runRecorded(std::vector<std::string> statements, const tsql::TableInfo& table) {
  if (!table.temporary) std::ranges::move(recordingSql(table), std::back_inserter(statements));
  runTogether(statements);
}

void BatchRunner::apply(const tsql::CreateTable& create) {
  runRecorded(create.sql, create.table);
  state_.catalog.created(create.table);
  rowCount_ = 0;
}

void BatchRunner::apply(const tsql::AlterTable& alter) {
  runRecorded(alter.sql, alter.table);
  state_.catalog.altered(alter.table);
  rowCount_ = 0;
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
  rowCount_ = 0;
}

void BatchRunner::apply(const tsql::Assign& assign) {
  std::vector<tsql::SqlType> types;
  for (const auto& name : assign.variables) types.push_back(variable(name).type);
  if (assign.counted) types.push_back(tsql::SqlType::of(tsql::SqlKind::bigInt));
  auto result = runNative(assign.sql);
  const auto cells = readCells(result, types);
  if (assign.counted) {
    rowCount_ = cells.back().toInt64();
    for (std::size_t i = 0; rowCount_ > 0 && i < assign.variables.size(); ++i)
      variable(assign.variables[i]).value = cells[i];
    return;
  }
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
  rowCount_ = 0;
}

tsql::Scope BatchRunner::scope() {
  return {state_.catalog,      variables_,          parameters_,         now(),
          state_.readOnly,     rowCount_,           state_.transactions, state_.lastError,
          state_.lastIdentity, state_.scopeIdentity};
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
