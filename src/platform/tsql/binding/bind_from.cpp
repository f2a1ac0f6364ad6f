#include "platform/tsql/binding/bind_from.h"

#include <algorithm>

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
#include "platform/tsql/syntax/parser.h"

namespace velmora::tsql {
namespace {

constexpr int kMaxViewDepth = 32;

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
    const std::string& alias = named.alias ? *named.alias : named.name.name;
    const CommonTableInfo* common =
        named.name.qualifiers.empty() ? scope_.findCommonTable(named.name.name) : nullptr;
    const TableInfo* table = common == nullptr ? findTable(context_, named.name) : nullptr;
    if (table != nullptr && !table->viewText.empty()) return bindView(*table, alias, position);
    Source source = sourceNamed(alias);
    std::string relation;
    if (common != nullptr) {
      source.columns = common->columns;
      relation = common->engine;
    } else if (table != nullptr) {
      describe(*table, source);
      relation = table->engineName;
    } else {
      relation = systemRelation(named.name, source);
    }
    relation += " AS " + source.engine;
    if (renameHiding(source, around())) relation += source.columnList();
    return add(std::move(relation), std::move(source), position);
  }

  Source sourceNamed(const std::string& alias) const {
    Source source;
    source.alias = alias;
    source.engine = scope_.engineAlias(alias);
    return source;
  }

  /// What may stand around an item in DuckDB SQL: to the right of a left join the ON may become
  /// a query of its own over the item.
  const QueryScope* around() const { return leftJoins_ > 0 ? &scope_ : scope_.outer; }

  std::string add(std::string sql, Source source, Position position) {
    addSource(scope_, std::move(source), position);
    result_.relations.push_back(sql);
    return sql;
  }

  void describe(const TableInfo& table, Source& source) {
    ++context_.tableUses[&table];
    if (!table.isView) source.table = &table;
    if (!table.primaryKey.empty()) source.uniqueKeys.push_back(table.primaryKey);
    for (const UniqueIndex& index : table.uniqueIndexes) {
      source.uniqueKeys.push_back(index.columns);
    }
    for (const ColumnInfo& column : table.columns) {
      source.columns.push_back({column.name, column.type, column.nullable, column.engineName});
    }
  }

  std::string systemRelation(const QualifiedName& name, Source& source) {
    auto view = systemView(name.name, context_.scope.catalog);
    if (!view) raiseAt(name.position, 208, "Invalid object name '" + name.name + "'.");
    source.columns = std::move(view->columns);
    return "(" + view->sql + ")";
  }

  std::string bindDerived(const DerivedTable& derived, Position position) {
    // A derived table does not see its neighbours, only what is around the whole query.
    const BoundQuery query = bindInner(scope_.outer, *derived.query);
    if (!derived.columns.empty() && derived.columns.size() != columnsOf(query).size()) {
      raiseAt(position, 8158,
              "'" + derived.alias + "' has a different number of columns than its column list.");
    }
    return addQuery(query, derived.alias, derived.columns, position);
  }

  BoundQuery bindInner(const QueryScope* outer, const Query& query) {
    const auto usesBefore = context_.tableUses;
    BoundQuery bound = context_.queries.bind(context_, outer, query);
    noteSettledUses(bound, usesBefore);
    return bound;
  }

  /// Its text is bound anew at every use, so that it says what it says now and here.
  std::string bindView(const TableInfo& view, const std::string& alias, Position position) {
    if (context_.viewDepth == kMaxViewDepth) {
      raiseAt(position, 217,
              "View '" + view.name + "' is nested more than " + std::to_string(kMaxViewDepth) +
                  " views deep.");
    }
    ++context_.viewDepth;
    const BoundQuery query = bindViewQuery(view, position);
    --context_.viewDepth;
    std::vector<std::string> names;
    names.reserve(view.columns.size());
    for (const ColumnInfo& column : view.columns) names.push_back(column.name);
    if (columnsOf(query).size() < names.size()) {
      raiseAt(position, 4502,
              "View '" + view.name + "' has more column names specified than columns defined.");
    }
    return addQuery(query, alias, names, position);
  }

  BoundQuery bindViewQuery(const TableInfo& view, Position position) {
    try {
      return bindInner(nullptr, *parseQuery(view.viewText));
    } catch (const com::Error& error) {
      raiseInView(view, error.description(), position);
    }
  }

  /// The place in the view's text means nothing to its user; of views within views the
  /// innermost one is named.
  [[noreturn]] static void raiseInView(const TableInfo& view, const std::string& problem,
                                       Position position) {
    const std::string text = problem.substr(0, problem.rfind(" (line "));
    for (const int number : {217, 4413}) {
      const std::string own = std::to_string(number) + ": ";
      if (text.starts_with(own)) raiseAt(position, number, text.substr(own.size()));
    }
    raiseAt(position, 4413,
            "Could not use view '" + view.name + "' because of binding errors: " + text);
  }

  /// A query as a source; its columns may have other names, and fewer of them: what a table
  /// has got since the view with `select *` was made is not shown.
  std::string addQuery(const BoundQuery& query, const std::string& alias,
                       const std::vector<std::string>& names, Position position) {
    Source source = sourceNamed(alias);
    source.columns = queryColumns(query, names, alias, position);
    const bool ownNames = std::ranges::equal(source.columns, columnsOf(query), {},
                                             &SourceColumn::name, &OutputColumn::name);
    if (const auto* select = std::get_if<BoundSelect>(&query.body.node);
        select != nullptr && select->uniqueKey && ownNames) {
      source.uniqueKeys.push_back(*select->uniqueKey);
    }
    renameHiding(source, around());
    std::string sql = "(" + context_.queries.text(context_, query, typesOf(query)) + ") AS " +
                      source.engine + source.columnList();
    return add(std::move(sql), std::move(source), position);
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

  static std::vector<SourceColumn> queryColumns(const BoundQuery& query,
                                                const std::vector<std::string>& names,
                                                const std::string& alias, Position position) {
    const auto& outputs = columnsOf(query);
    std::vector<SourceColumn> columns;
    for (std::size_t i = 0; i < (names.empty() ? outputs.size() : names.size()); ++i) {
      const std::string& name = names.empty() ? outputs[i].name : names[i];
      checkColumnName(columns, name, i, alias, position);
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

  std::string bindJoin(const Join& join) {
    const std::size_t first = scope_.sources.size();
    const std::string left = bind(*join.left);
    const std::size_t second = scope_.sources.size();
    leftJoins_ += join.kind == JoinKind::Left ? 1 : 0;
    const std::string right = bindSide(*join.right);
    leftJoins_ -= join.kind == JoinKind::Left ? 1 : 0;
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
  int leftJoins_ = 0;  ///< to whose right the item stands
};

}  // namespace

BoundFrom bindFrom(Context& context, QueryScope& scope, const std::vector<TableSourcePtr>& from) {
  return FromBinder(context, scope).bindAll(from);
}

}  // namespace velmora::tsql
