#include "platform/tsql/binding/names/query_scope.h"

#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

const SourceColumn* findColumn(const Source& source, std::string_view name) {
  for (const SourceColumn& column : source.columns) {
    if (sameName(column.name, name)) return &column;
  }
  return nullptr;
}

std::string written(const QualifiedName& name) {
  std::string text;
  for (const std::string& part : name.qualifiers) text += part + ".";
  return text + name.name;
}

[[noreturn]] void raiseUnknown(const QualifiedName& name) {
  raiseAt(name.position, 207, "Invalid column name '" + name.name + "'.");
}

ColumnMatch resolveQualified(const QueryScope& scope, const QualifiedName& name) {
  for (const QueryScope* at = &scope; at != nullptr; at = at->outer) {
    const Source* source = findSource(*at, name.qualifiers.back());
    if (source == nullptr) continue;
    const SourceColumn* column = findColumn(*source, name.name);
    if (column == nullptr) raiseUnknown(name);
    return {at, source, column};
  }
  raiseAt(name.position, 4104,
          "The multi-part identifier \"" + written(name) + "\" could not be bound.");
}

ColumnMatch resolveIn(const QueryScope& scope, const QualifiedName& name) {
  ColumnMatch match;
  for (const Source& source : scope.sources) {
    const SourceColumn* column = findColumn(source, name.name);
    if (column == nullptr) continue;
    if (match.column != nullptr) {
      raiseAt(name.position, 209, "Ambiguous column name '" + name.name + "'.");
    }
    match = {&scope, &source, column};
  }
  return match;
}

/// Whether a source of this query or of those around it is called so in DuckDB SQL.
bool isEngineAlias(const QueryScope* scope, std::string_view name) {
  for (const QueryScope* at = scope; at != nullptr; at = at->outer) {
    for (const Source& source : at->sources) {
      if (sameName(source.engine, name)) return true;
    }
  }
  return false;
}

}  // namespace

std::string SourceColumn::quoted() const {
  return quoteName(engineName.empty() ? name : engineName);
}

std::string Source::columnSql(const SourceColumn& column) const {
  return engine.empty() ? column.quoted() : engine + "." + column.quoted();
}

std::string Source::columnList() const {
  std::string list;
  for (const SourceColumn& column : columns) list += (list.empty() ? "(" : ", ") + column.quoted();
  return list + ")";
}

const CommonTableInfo* QueryScope::findCommonTable(std::string_view name) const {
  for (const QueryScope* at = this; at != nullptr; at = at->outer) {
    const auto found = at->commonTables.find(name);
    if (found != at->commonTables.end()) return &found->second;
  }
  return nullptr;
}

std::string QueryScope::engineAlias(std::string_view alias) const {
  std::string name = quoteName(alias);
  for (int number = 1; isEngineAlias(this, name); ++number) {
    name = quoteName(std::string(alias) + "_" + std::to_string(number));
  }
  return name;
}

ColumnMatch resolveColumn(const QueryScope& scope, const QualifiedName& name) {
  if (!name.qualifiers.empty()) return resolveQualified(scope, name);
  for (const QueryScope* at = &scope; at != nullptr; at = at->outer) {
    const ColumnMatch match = resolveIn(*at, name);
    if (match.column != nullptr) return match;
  }
  raiseUnknown(name);
}

const Source* findSource(const QueryScope& scope, std::string_view name) {
  for (const Source& source : scope.sources) {
    if (sameName(source.alias, name)) return &source;
  }
  return nullptr;
}

void addSource(QueryScope& scope, Source source, Position position) {
  if (findSource(scope, source.alias) != nullptr) {
    raiseAt(position, 1013,
            "The objects \"" + source.alias +
                "\" in the FROM clause have the same exposed "
                "names. Use correlation names to distinguish them.");
  }
  scope.sources.push_back(std::move(source));
}

bool renameHiding(Source& source, const QueryScope* around) {
  bool renamed = false;
  for (SourceColumn& column : source.columns) {
    if (!isEngineAlias(around, column.quoted())) continue;
    std::string name = column.name;
    do {
      name += "_";
    } while (findColumn(source, name) != nullptr || isEngineAlias(around, quoteName(name)));
    column.engineName = std::move(name);
    renamed = true;
  }
  return renamed;
}

}  // namespace velmora::tsql
