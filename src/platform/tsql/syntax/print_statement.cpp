#include "platform/tsql/syntax/print.h"
#include "platform/tsql/syntax/print_parts.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

void appendRow(std::string& out, const std::vector<ExpressionPtr>& row) {
  out += '(';
  appendList(out, row);
  out += ')';
}

void appendAssignment(std::string& out, const Assignment& assignment) {
  append(out, assignment.column);
  out += " = ";
  append(out, assignment.value);
}

void appendCheck(std::string& out, const ExpressionPtr& check) {
  out += " CHECK (";
  append(out, check);
  out += ')';
}

void appendColumn(std::string& out, const ColumnDefinition& column) {
  appendName(out, column.name);
  if (column.computed) return appendClause(out, "AS", column.computed);
  out += ' ';
  append(out, column.type);
  if (column.identity) {
    out += " IDENTITY(" + std::to_string(column.identity->seed) + "," +
           std::to_string(column.identity->increment) + ")";
  }
  if (column.nullable) out += *column.nullable ? " NULL" : " NOT NULL";
  if (column.primaryKey) out += " PRIMARY KEY";
  if (column.unique) out += " UNIQUE";
  appendClause(out, "DEFAULT", column.defaultValue);
  for (const ExpressionPtr& check : column.checks) appendCheck(out, check);
}

void appendIndexColumns(std::string& out, const std::vector<IndexColumn>& columns) {
  out += " (";
  appendList(out, columns, [](std::string& text, const IndexColumn& column) {
    appendName(text, column.name);
    if (column.descending) text += " DESC";
  });
  out += ')';
}

void appendKey(std::string& out, const KeyConstraint& key) {
  out += key.primary ? "PRIMARY KEY" : "UNIQUE";
  appendIndexColumns(out, key.columns);
}

void appendDeclaration(std::string& out, const VariableDeclaration& variable) {
  out += variable.name + " ";
  append(out, variable.type);
  appendClause(out, "=", variable.value);
}

std::string uppered(std::string_view words) {
  std::string text(words);
  for (char& c : text) {
    if (isAsciiLetter(c)) c = static_cast<char>(c & ~0x20);
  }
  return text;
}

class StatementPrinter {
 public:
  explicit StatementPrinter(std::string& out) : out_(out) {}

  void operator()(const SelectStatement& select) { append(out_, *select.query); }

  void operator()(const InsertStatement& insert) {
    word("INSERT INTO ", insert.table);
    appendNameList(out_, insert.columns);
    appendOutput(out_, insert.output);
    if (insert.defaultValues) {
      out_ += " DEFAULT VALUES";
    } else if (const auto* rows = std::get_if<ValueRows>(&insert.source)) {
      out_ += " VALUES ";
      appendList(out_, *rows, appendRow);
    } else {
      out_ += ' ';
      append(out_, *std::get<QueryPtr>(insert.source));
    }
  }

  void operator()(const UpdateStatement& update) {
    out_ += "UPDATE ";
    top(update.top);
    append(out_, update.target);
    out_ += " SET ";
    appendList(out_, update.assignments, appendAssignment);
    appendOutput(out_, update.output);
    appendFrom(out_, update.from);
    appendClause(out_, "WHERE", update.where);
  }

  void operator()(const DeleteStatement& statement) {
    out_ += "DELETE ";
    top(statement.top);
    word("FROM ", statement.target);
    appendOutput(out_, statement.output);
    appendFrom(out_, statement.from);
    appendClause(out_, "WHERE", statement.where);
  }

  void operator()(const TruncateStatement& truncate) { word("TRUNCATE TABLE ", truncate.table); }

  void operator()(const CreateTableStatement& create) {
    word("CREATE TABLE ", create.table);
    tableBody(create);
  }

  void operator()(const AlterTableStatement& alter) {
    word("ALTER TABLE ", alter.table);
    out_ += alter.added.empty() ? " DROP COLUMN " : " ADD ";
    appendList(out_, alter.added, appendColumn);
    appendList(out_, alter.dropped);
  }

  void operator()(const CreateIndexStatement& create) {
    out_ += create.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    appendName(out_, create.name);
    word(" ON ", create.table);
    appendIndexColumns(out_, create.columns);
  }

  void operator()(const CreateViewStatement& create) {
    word("CREATE VIEW ", create.view);
    appendNameList(out_, create.columns);
    out_ += " AS ";
    append(out_, *create.query);
  }

  void operator()(const DropTableStatement& drop) {
    out_ += drop.ifExists ? "DROP TABLE IF EXISTS " : "DROP TABLE ";
    appendList(out_, drop.tables);
  }

  void operator()(const DropViewStatement& drop) {
    out_ += drop.ifExists ? "DROP VIEW IF EXISTS " : "DROP VIEW ";
    appendList(out_, drop.views);
  }

  void operator()(const DropIndexStatement& drop) {
    out_ += drop.ifExists ? "DROP INDEX IF EXISTS " : "DROP INDEX ";
    appendName(out_, drop.name);
    word(" ON ", drop.table);
  }

  void operator()(const DeclareStatement& declare) {
    out_ += "DECLARE ";
    appendList(out_, declare.variables, appendDeclaration);
    for (const CreateTableStatement& table : declare.tables) {
      const bool first = declare.variables.empty() && &table == &declare.tables.front();
      out_ += (first ? "" : ", ") + table.table.name + " TABLE";
      tableBody(table);
    }
  }

  void operator()(const SetVariableStatement& set) {
    out_ += "SET " + set.name + " = ";
    append(out_, set.value);
  }

  void operator()(const SetOptionStatement& set) {
    out_ += "SET ";
    appendList(out_, set.options,
               [](std::string& text, const std::string& option) { text += uppered(option); });
    out_ += set.on ? " ON" : " OFF";
  }

  void operator()(const SetIsolationStatement& set) {
    out_ += "SET TRANSACTION ISOLATION LEVEL " + uppered(set.level);
  }

  void operator()(const IfStatement& statement) {
    out_ += "IF ";
    append(out_, statement.condition);
    out_ += ' ';
    append(out_, *statement.then);
    if (!statement.otherwise) return;
    out_ += " ELSE ";
    append(out_, *statement.otherwise);
  }

  void operator()(const WhileStatement& loop) {
    out_ += "WHILE ";
    append(out_, loop.condition);
    out_ += ' ';
    append(out_, *loop.body);
  }

  void operator()(const BreakStatement&) { out_ += "BREAK"; }

  void operator()(const ContinueStatement&) { out_ += "CONTINUE"; }

  void operator()(const BlockStatement& block) {
    out_ += "BEGIN ";
    for (const Statement& statement : block.statements) {
      append(out_, statement);
      out_ += "; ";
    }
    out_ += "END";
  }

  void operator()(const PrintStatement& print) {
    out_ += "PRINT ";
    append(out_, print.value);
  }

  void operator()(const TransactionStatement& transaction) {
    switch (transaction.action) {
      case TransactionAction::Begin:
        out_ += "BEGIN TRANSACTION";
        break;
      case TransactionAction::Commit:
        out_ += "COMMIT";
        break;
      case TransactionAction::Rollback:
        out_ += "ROLLBACK";
        break;
    }
  }

 private:
  void top(const ExpressionPtr& count) {
    if (!count) return;
    out_ += "TOP (";
    append(out_, count);
    out_ += ") ";
  }

  void tableBody(const CreateTableStatement& create) {
    out_ += " (";
    appendList(out_, create.columns, appendColumn);
    for (const KeyConstraint& key : create.keys) {
      if (!create.columns.empty() || &key != &create.keys.front()) out_ += ", ";
      appendKey(out_, key);
    }
    for (const ExpressionPtr& check : create.checks) {
      out_ += ',';
      appendCheck(out_, check);
    }
    out_ += ')';
  }

  void word(const char* words, const QualifiedName& name) {
    out_ += words;
    append(out_, name);
  }

  std::string& out_;
};

}  // namespace

void append(std::string& out, const Statement& statement) {
  std::visit(StatementPrinter(out), statement.node);
}

std::string print(const Statement& statement) {
  std::string out;
  append(out, statement);
  return out;
}

std::string print(const Batch& batch) {
  std::string out;
  for (const Statement& statement : batch.statements) {
    append(out, statement);
    out += ";\n";
  }
  return out;
}

}  // namespace velmora::tsql
