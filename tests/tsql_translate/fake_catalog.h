#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/tsql/binding/names/catalog.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/parser.h"
#include "platform/tsql/translate.h"

namespace velmora::tsql::test {

/// Tables kept in memory, made by CREATE TABLE statements.
class FakeCatalog final : public Catalog {
 public:
  const TableInfo* findTable(std::string_view name) override {
    for (const auto& table : tables_) {
      if (sameName(table->name, name)) return table.get();
    }
    return nullptr;
  }
  std::int64_t nextIdentity(const TableInfo&) override { return next; }
  std::vector<const TableInfo*> tables() override {
    std::vector<const TableInfo*> all;
    for (const auto& table : tables_) all.push_back(table.get());
    return all;
  }
  void add(TableInfo table) {
    table.objectId = static_cast<std::int64_t>(tables_.size()) + 1;
    tables_.push_back(std::make_unique<TableInfo>(std::move(table)));
  }

  std::int64_t next = 1;

 private:
  std::vector<std::unique_ptr<TableInfo>> tables_;
};

/// Translates single statements against a catalogue of its own.
class Translator {
 public:
  explicit Translator(std::string_view tables) {
    const Batch batch = parse(tables);
    for (const Statement& statement : batch.statements) {
      catalog.add(std::get<CreateTable>(translate(statement, scope()).action).table);
    }
  }

  Translation translation(std::string_view sql) {
    const Batch batch = parse(sql);
    return translate(batch.statements.front(), scope());
  }
  std::string sql(std::string_view statement) {
    const Action action = translation(statement).action;
    if (const auto* rows = std::get_if<Rows>(&action)) return rows->sql;
    return std::get<Change>(action).sql;
  }
  Scope scope() { return {catalog, variables, parameters, now, readOnly, 0, 0, 0, {}, {}}; }

  FakeCatalog catalog;
  Variables variables;
  std::vector<Variable> parameters;
  collections::Date now = collections::Date::ymd(2009, 3, 5);
  bool readOnly = false;
};

}  // namespace velmora::tsql::test
