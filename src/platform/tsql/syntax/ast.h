#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/tsql/syntax/ast_expression.h"
#include "platform/tsql/syntax/ast_query.h"

/// The syntax tree of a T-SQL batch: statements here, queries and expressions in the two
/// headers beside it. Every construct has its own node, owned by the one above it; names
/// are not resolved.

namespace velmora::tsql {

struct Statement;
using StatementPtr = std::unique_ptr<Statement>;

// Queries and changes ------------------------------------------------------------------

struct SelectStatement {
  QueryPtr query;
};

using ValueRows = std::vector<std::vector<ExpressionPtr>>;

struct InsertStatement {
  QualifiedName table;
  std::vector<std::string> columns;  // empty: all of the table's columns
  bool defaultValues = false;        // `default values`, one empty row
  std::vector<SelectItem> output;    // of OUTPUT; empty without it
  std::variant<ValueRows, QueryPtr> source;
};

struct Assignment {
  QualifiedName column;  // `FAmount` or `v1.FAmount`
  ExpressionPtr value;
};

struct UpdateStatement {
  ExpressionPtr top;     // null without TOP
  QualifiedName target;  // a table, or an alias of FROM
  std::vector<Assignment> assignments;
  std::vector<SelectItem> output;
  std::vector<TableSourcePtr> from;
  ExpressionPtr where;  // null when left out
};

struct DeleteStatement {
  ExpressionPtr top;     // null without TOP
  QualifiedName target;  // a table, or an alias of FROM
  std::vector<SelectItem> output;
  std::vector<TableSourcePtr> from;
  ExpressionPtr where;  // null when left out
};

struct TruncateStatement {
  QualifiedName table;
};

// Definitions --------------------------------------------------------------------------

struct Identity {
  long long seed = 1;
  long long increment = 1;
};

struct ColumnDefinition {
  Position position;
  std::string name;
  DataType type;
  std::optional<Identity> identity;
  ExpressionPtr defaultValue;    // null when left out
  std::optional<bool> nullable;  // absent when the text says neither
  bool primaryKey = false;
  bool unique = false;
  ExpressionPtr computed;  // `name as expression`: no type then
  std::vector<ExpressionPtr> checks;
};

struct IndexColumn {
  std::string name;
  bool descending = false;
};

/// `primary key (a, b)`, `unique (a)`; names of constraints are accepted and dropped.
struct KeyConstraint {
  Position position;
  bool primary = false;
  std::vector<IndexColumn> columns;
};

struct CreateTableStatement {
  QualifiedName table;
  std::vector<ColumnDefinition> columns;
  std::vector<KeyConstraint> keys;
  std::vector<ExpressionPtr> checks;
};

/// `alter table t add column, ...`, `alter table t drop column a, b`.
struct AlterTableStatement {
  QualifiedName table;
  std::vector<ColumnDefinition> added;
  std::vector<QualifiedName> dropped;
};

struct CreateIndexStatement {
  std::string name;
  QualifiedName table;
  std::vector<IndexColumn> columns;
  bool unique = false;
};

struct CreateViewStatement {
  QualifiedName view;
  std::vector<std::string> columns;  // empty: the query's own names
  QueryPtr query;
};

struct DropTableStatement {
  std::vector<QualifiedName> tables;
  bool ifExists = false;
};

struct DropViewStatement {
  std::vector<QualifiedName> views;
  bool ifExists = false;
};

/// `drop index name on table` or `drop index table.name`.
struct DropIndexStatement {
  std::string name;
  QualifiedName table;
  bool ifExists = false;
};

// Variables, options, flow -------------------------------------------------------------

struct VariableDeclaration {
  Position position;
  std::string name;  // with its at sign
  DataType type;
  ExpressionPtr value;  // null when left out
};

/// Scalar variables and table variables.
struct DeclareStatement {
  std::vector<CreateTableStatement> tables;
  std::vector<VariableDeclaration> variables;
};

struct SetVariableStatement {
  std::string name;  // with its at sign
  ExpressionPtr value;
};

/// `set nocount on`, `set ansi_nulls, quoted_identifier on`: options that do not change
/// an answer here. Names in lower case.
struct SetOptionStatement {
  std::vector<std::string> options;
  bool on = false;
};

/// `set transaction isolation level ...`, the level in lower case with single blanks.
struct SetIsolationStatement {
  std::string level;
};

struct IfStatement {
  ExpressionPtr condition;
  StatementPtr then;
  StatementPtr otherwise;  // null without ELSE
};

struct WhileStatement {
  ExpressionPtr condition;
  StatementPtr body;
};
struct BreakStatement {};
struct ContinueStatement {};

/// `begin ... end`.
struct BlockStatement {
  std::vector<Statement> statements;
};

struct PrintStatement {
  ExpressionPtr value;
};

enum class TransactionAction { Begin, Commit, Rollback };

struct TransactionStatement {
  TransactionAction action = TransactionAction::Begin;
};

using StatementNode =
    std::variant<SelectStatement, InsertStatement, UpdateStatement, DeleteStatement,
                 TruncateStatement, CreateTableStatement, CreateIndexStatement, CreateViewStatement,
                 DropTableStatement, DropViewStatement, DropIndexStatement, DeclareStatement,
                 SetVariableStatement, SetOptionStatement, SetIsolationStatement, IfStatement,
                 WhileStatement, BreakStatement, ContinueStatement, AlterTableStatement,
                 BlockStatement, PrintStatement, TransactionStatement>;

struct Statement {
  Position position;
  StatementNode node;
};

struct Batch {
  std::vector<Statement> statements;
  /// How many `?` the text holds.
  int parameterCount = 0;
};

}  // namespace velmora::tsql
