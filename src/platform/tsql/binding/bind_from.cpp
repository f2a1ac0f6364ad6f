#include "platform/tsql/binding/bind_from.h"

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_outer_join.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/find_table.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/names/system_views.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/join_words.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

/// Binds the items of one FROM clause.
class FromBinder {
 public:
  FromBinder(Context& context, QueryScope& scope) : context_(context), scope_(scope) {}

  BoundFrom bindAll(const std::vector<TableSourcePtr>& from) {
    for (const TableSourcePtr& source : from) {
      result_.sql += (result_.sql.empty() ? "" : ", ") + bind(*source);
    }
    return std::move(result_);
  }

 private:
  std::string bind(const TableSource& source) {
    return std::visit(
        Overloaded{
            [&](const NamedTable& table) { return bindNamed(table, source.position); },
            [&](const DerivedTable& table) { return bindDerived(table, source.position); },
            [&](const Join& join) { return bindJoin(join); },
        },
        source.node);
  }

  std::string bindNamed(const NamedTable& named, Position position) {
    Source source;
    source.alias = named.alias.value_or(named.name.name);
    source.engine = scope_.engineAlias(source.alias);
    const std::string relation = relationSql(named.name, source);
    std::string sql = relation + " AS " + source.engine;
    addSource(scope_, std::move(source), position);
    result_.relations.push_back(sql);
    return sql;
  }

  /// Fills the source's columns and gives what stands before its alias.
  std::string relationSql(const QualifiedName& name, Source& source) {
    if (name.qualifiers.empty()) {
      if (const CommonTableInfo* common = scope_.findCommonTable(name.name)) {
        source.columns = common->columns;
        return common->engine;
      }
    }
    const TableInfo* table = findTable(context_, name);
    if (table == nullptr) return systemRelation(name, source);
    ++context_.tableUses[table];
    if (!table->isView) source.table = table;
    if (!table->primaryKey.empty()) source.uniqueKeys.push_back(table->primaryKey);
    for (const UniqueIndex& index : table->uniqueIndexes) {
      source.uniqueKeys.push_back(index.columns);
    }
    for (const ColumnInfo& column : table->columns) {
      source.columns.push_back({column.name, column.type, column.nullable});
    }
    return table->engineName;
  }

  std::string systemRelation(const QualifiedName& name, Source& source) {
    auto view = systemView(name.name, context_.scope.catalog);
    if (!view) raiseAt(name.position, 208, "Invalid object name '" + name.name + "'.");
    source.columns = std::move(view->columns);
    return "(" + view->sql + ")";
  }

  std::string bindDerived(const DerivedTable& derived, Position position) {
    // A derived table does not see its neighbours, only what is around the whole query.
    const auto usesBefore = context_.tableUses;
    const BoundQuery query = context_.queries.bind(context_, scope_.outer, *derived.query);
    noteSettledUses(query, usesBefore);
    Source source;
    source.alias = derived.alias;
    source.engine = scope_.engineAlias(source.alias);
    source.columns = derivedColumns(query, derived, position);
    std::string sql = "(" + context_.queries.text(context_, query, typesOf(query)) + ") AS " +
                      source.engine + columnList(source);
    if (const auto* select = std::get_if<BoundSelect>(&query.body.node);
        select != nullptr && select->uniqueKey && derived.columns.empty()) {
      source.uniqueKeys.push_back(*select->uniqueKey);
    }
    addSource(scope_, std::move(source), position);
    result_.relations.push_back(sql);
    return sql;
  }

  /// A grouped query has read its tables to the end before its first row comes.
  void noteSettledUses(const BoundQuery& query, const std::map<const TableInfo*, int>& before) {
    const auto* select = std::get_if<BoundSelect>(&query.body.node);
    if (select == nullptr || !select->grouped) return;
    for (const auto& [table, uses] : context_.tableUses) {
      const auto earlier = before.find(table);
      context_.settledUses[table] += uses - (earlier == before.end() ? 0 : earlier->second);
    }
  }

  static std::vector<SourceColumn> derivedColumns(const BoundQuery& query,
                                                  const DerivedTable& derived, Position position) {
    const auto& outputs = columnsOf(query);
    if (!derived.columns.empty() && derived.columns.size() != outputs.size()) {
      raiseAt(position, 8158,
              "'" + derived.alias + "' has a different number of columns than its column list.");
    }
    std::vector<SourceColumn> columns;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      const std::string& name = derived.columns.empty() ? outputs[i].name : derived.columns[i];
      checkColumnName(columns, name, i, derived.alias, position);
      columns.push_back({name, outputs[i].type, outputs[i].nullable});
    }
    return columns;
  }

  static void checkColumnName(const std::vector<SourceColumn>& columns, const std::string& name,
                              std::size_t index, const std::string& alias, Position position) {
    if (name.empty()) {
      raiseAt(position, 8155,
              "No column name was specified for column " + std::to_string(index + 1) + " of '" +
                  alias + "'.");
    }
    for (const SourceColumn& column : columns) {
      if (sameName(column.name, name)) {
        std::string text = "The column '" + name;
        raiseAt(position, 8156,
                text.append("' was specified multiple times for '").append(alias).append("'."));
      }
    }
  }

  static std::string columnList(const Source& source) {
    std::vector<std::string> names;
    names.reserve(source.columns.size());
    for (const SourceColumn& column : source.columns) names.push_back(quoteName(column.name));
    return "(" + tsql::join(names, ", ") + ")";
  }

  std::string bindJoin(const Join& join) {
    const std::size_t first = scope_.sources.size();
    const std::string left = bind(*join.left);
    const std::size_t second = scope_.sources.size();
    const std::string right = bindSide(*join.right);
    if (join.kind == JoinKind::Right || join.kind == JoinKind::Full) makeNullable(first, second);
    if (join.kind == JoinKind::Left || join.kind == JoinKind::Full) {
      makeNullable(second, scope_.sources.size());
    }
    const std::string sides = left + std::string(joinWords(join.kind)) + right;
    if (!join.on) return sides;
    if (join.kind == JoinKind::Inner) {
      result_.conditions.push_back(ExpressionBinder(context_, scope_).bindCondition(*join.on));
      return sides + " ON " + result_.conditions.back().sql;
    }
    result_.inner = false;
    const BoundOn on = bindOuterJoin(context_, scope_, join, first, second);
    if (!on.lateral) return sides + " ON " + on.condition.sql;
    const bool keepsLeft = join.kind == JoinKind::Left;
    return (keepsLeft ? left : right) + " LEFT JOIN LATERAL " +
           matches(scope_.sources[keepsLeft ? second : first], keepsLeft ? right : left,
                   on.condition) +
           " ON TRUE";
  }

  /// The rows of a source that meet the condition, under the source's name.
  static std::string matches(const Source& source, const std::string& relation,
                             const BoundCondition& condition) {
    const std::string row = source.table == nullptr ? "" : source.engine + ".rowid, ";
    return "(SELECT " + row + source.engine + ".* FROM " + relation + " WHERE " + condition.sql +
           ") AS " + source.engine;
  }

  std::string bindSide(const TableSource& source) {
    const bool nested = std::holds_alternative<Join>(source.node);
    return nested ? "(" + bind(source) + ")" : bind(source);
  }

  void makeNullable(std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
      for (SourceColumn& column : scope_.sources[i].columns) column.nullable = true;
    }
  }

  Context& context_;
  QueryScope& scope_;
  BoundFrom result_;
};

}  // namespace

BoundFrom bindFrom(Context& context, QueryScope& scope, const std::vector<TableSourcePtr>& from) {
  return FromBinder(context, scope).bindAll(from);
}

}  // namespace velmora::tsql
