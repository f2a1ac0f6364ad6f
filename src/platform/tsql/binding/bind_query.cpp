#include "platform/tsql/binding/bind_query.h"

#include <algorithm>

#include "platform/tsql/binding/bind_select.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

std::vector<OutputColumn> outputColumns(const BoundSelect& select) {
  std::vector<OutputColumn> columns;
  columns.reserve(select.outputs.size());
  for (const OutputValue& output : select.outputs) {
    columns.push_back({output.name, output.value.type, output.value.nullable});
  }
  return columns;
}

/// Binds the bodies of one query.
class BodyBinder {
 public:
  BodyBinder(Context& context, const QueryScope* outer) : context_(context), outer_(outer) {}

  BoundBody bind(const QueryBody& body, const std::vector<OrderItem>& orderBy) {
    return std::visit(Overloaded{[&](const Select& select) { return bindOne(select, orderBy); },
                                 [&](const UnionQuery& united) { return bindUnion(united); },
                                 [&](const SetQuery& query) { return bindSetQuery(query); }},
                      body.node);
  }

 private:
  BoundBody bindOne(const Select& select, const std::vector<OrderItem>& orderBy) {
    QueryScope scope;
    scope.outer = outer_;
    BoundSelect bound = bindSelect(context_, scope, select, orderBy);
    std::vector<OutputColumn> columns = outputColumns(bound);
    return {std::move(bound), std::move(columns)};
  }

  BoundBody bindUnion(const UnionQuery& united) {
    BoundUnion result;
    result.branches.push_back(bind(*united.first, {}));
    std::vector<OutputColumn> columns = result.branches.front().columns;
    for (const UnionQuery::Branch& branch : united.rest) {
      result.branches.push_back(bind(*branch.body, {}));
      merge(columns, result.branches.back().columns, branch.body->position);
      // Duplicates go once more after every plain UNION, so the last one decides.
      if (!branch.all) result.distinctBranches = result.branches.size();
    }
    for (OutputColumn& column : columns) {
      if (column.type.kind == SqlKind::untypedNull) column.type = SqlType::integer();
    }
    return {std::move(result), std::move(columns)};
  }

  BoundBody bindSetQuery(const SetQuery& query) {
    BoundSetQuery result{query.intersect, {}};
    result.branches.push_back(bind(*query.left, {}));
    result.branches.push_back(bind(*query.right, {}));
    std::vector<OutputColumn> columns = result.branches.front().columns;
    merge(columns, result.branches.back().columns, query.right->position);
    for (OutputColumn& column : columns) {
      if (column.type.kind == SqlKind::untypedNull) column.type = SqlType::integer();
    }
    return {std::move(result), std::move(columns)};
  }

  static void merge(std::vector<OutputColumn>& columns, const std::vector<OutputColumn>& more,
                    Position position) {
    if (columns.size() != more.size()) {
      raiseAt(position, 205,
              "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal "
              "number of "
              "expressions in their target lists: " +
                  std::to_string(columns.size()) + " and " + std::to_string(more.size()) + ".");
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
      columns[i].type = commonType(columns[i].type, more[i].type);
      columns[i].nullable = columns[i].nullable || more[i].nullable;
    }
  }

  Context& context_;
  const QueryScope* outer_;
};

/// The columns a common table offers, named by its list or by its query.
CommonTableInfo commonTable(const CommonTable& table, const std::vector<OutputColumn>& outputs) {
  CommonTableInfo info{quoteName(table.name), {}};
  if (!table.columns.empty() && table.columns.size() != outputs.size()) {
    raiseAt(table.position, 8158,
            "'" + table.name + "' has a different number of columns than its column list.");
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const std::string& name = table.columns.empty() ? outputs[i].name : table.columns[i];
    if (name.empty()) {
      raiseAt(table.position, 8155,
              "No column name was specified for column " + std::to_string(i + 1) + " of '" +
                  table.name + "'.");
    }
    info.columns.push_back({name, outputs[i].type, outputs[i].nullable});
  }
  return info;
}

std::string columnNames(const CommonTableInfo& info) {
  std::vector<std::string> names;
  for (const SourceColumn& column : info.columns) names.push_back(quoteName(column.name));
  return join(names, ", ");
}

std::string commonTableSql(Context& context, QueryScope& scope, const CommonTable& table) {
  const BoundQuery bound = bindQuery(context, &scope, *table.query);
  CommonTableInfo info = commonTable(table, columnsOf(bound));
  std::string sql = info.engine + "(" + columnNames(info) + ") AS (" +
                    context.queries.text(context, bound, typesOf(bound)) + ")";
  scope.commonTables[table.name] = std::move(info);
  return sql;
}

/// How often a FROM clause names the table; the last alias goes to `alias`.
int countUses(const TableSource& source, std::string_view name, std::string& alias) {
  if (const auto* joined = std::get_if<Join>(&source.node)) {
    return countUses(*joined->left, name, alias) + countUses(*joined->right, name, alias);
  }
  const auto* named = std::get_if<NamedTable>(&source.node);
  if (named == nullptr || !named->name.qualifiers.empty()) return 0;
  if (!sameName(named->name.name, name)) return 0;
  alias = named->alias.value_or(named->name.name);
  return 1;
}

int countUses(const QueryBody& body, std::string_view name, std::string& alias) {
  const auto* select = std::get_if<Select>(&body.node);
  if (select == nullptr) return 0;
  int uses = 0;
  for (const TableSourcePtr& source : select->from) uses += countUses(*source, name, alias);
  return uses;
}

bool joinsOuter(const TableSource& source) {
  const auto* joined = std::get_if<Join>(&source.node);
  if (joined == nullptr) return false;
  const bool inner = joined->kind == JoinKind::Inner || joined->kind == JoinKind::Cross;
  return !inner || joinsOuter(*joined->left) || joinsOuter(*joined->right);
}

constexpr int kMaxRecursion = 100;  // without MAXRECURSION

/// WITH name AS (anchor UNION ALL select ... from name): the rows of one round come from
/// those of the round before, whose number they carry.
class RecursiveTable {
 public:
  RecursiveTable(Context& context, QueryScope& scope, const CommonTable& table,
                 std::optional<int> most)
      : context_(context), scope_(scope), table_(table), most_(most.value_or(kMaxRecursion)) {}

  /// Whether the table's query names the table itself.
  static bool isRecursive(const CommonTable& table) {
    const auto* united = std::get_if<UnionQuery>(&table.query->body.node);
    std::string ignored;
    return united != nullptr && std::ranges::any_of(united->rest, [&](const auto& branch) {
             return countUses(*branch.body, table.name, ignored) > 0;
           });
  }

  std::string sql() {
    const auto& united = std::get<UnionQuery>(table_.query->body.node);
    BoundQuery anchor{"", BodyBinder(context_, &scope_).bind(*united.first, {}), {}};
    CommonTableInfo info = commonTable(table_, columnsOf(anchor));
    std::string sql =
        info.engine + "(" + columnNames(info) + ", " + kRound + ") AS (SELECT q.*, 0 FROM (" +
        context_.queries.text(context_, anchor, typesOf(anchor)) + ") AS q UNION ALL (";
    scope_.commonTables[table_.name] = std::move(info);
    for (const UnionQuery::Branch& branch : united.rest) {
      sql += (&branch == &united.rest.front() ? "" : " UNION ALL ") +
             roundSql(branch, typesOf(anchor));
    }
    return sql + "))";
  }

 private:
  static constexpr const char* kRound = "\"@round\"";

  std::string roundSql(const UnionQuery::Branch& branch, std::vector<SqlType> types) {
    const Position position = branch.body->position;
    std::string alias;
    if (!branch.all || countUses(*branch.body, table_.name, alias) != 1) {
      refuse(position,
             "a recursive common table that is not one UNION ALL of a start and selects "
             "which read it once");
    }
    for (const TableSourcePtr& source : std::get<Select>(branch.body->node).from) {
      if (joinsOuter(*source)) {
        raiseAt(position, 462,
                "Outer join is not allowed in the recursive part of a recursive common table "
                "expression '" +
                    table_.name + "'.");
      }
    }
    BoundQuery query{"", BodyBinder(context_, &scope_).bind(*branch.body, {}), {}};
    auto& select = std::get<BoundSelect>(query.body.node);
    if (select.grouped || select.distinct || select.isLimited()) {
      raiseAt(position, 467,
              "GROUP BY, HAVING, DISTINCT, TOP or aggregate functions are not allowed in the "
              "recursive part of a recursive common table expression '" +
                  table_.name + "'.");
    }
    requireTypes(query, types, position);
    const std::string round = quoteName(alias) + "." + kRound;
    const std::string next = "(CASE WHEN " + round + " >= " + std::to_string(most_) +
                             " THEN error('530: The maximum recursion " + std::to_string(most_) +
                             " has been exhausted before statement completion.') ELSE " + round +
                             " + 1 END)";
    select.outputs.push_back(
        {"", computed(most_ == 0 ? round : next, SqlType::integer()), position});
    types.push_back(SqlType::integer());
    return context_.queries.text(context_, query, types);
  }

  void requireTypes(const BoundQuery& query, const std::vector<SqlType>& types,
                    Position position) const {
    const auto& columns = columnsOf(query);
    if (columns.size() != types.size()) {
      raiseAt(position, 205,
              "All queries combined using a UNION operator must have an equal "
              "number of expressions in their target lists.");
    }
    for (std::size_t i = 0; i < types.size(); ++i) {
      if (columns[i].type == types[i]) continue;
      raiseAt(position, 240,
              "Types don't match between the anchor and the recursive part in column " +
                  std::to_string(i + 1) + " of recursive query '" + table_.name + "'.");
    }
  }

  Context& context_;
  QueryScope& scope_;
  const CommonTable& table_;
  int most_;
};

std::string bindCommonTables(Context& context, QueryScope& scope, const Query& query) {
  std::vector<std::string> tables;
  bool recursive = false;
  for (const CommonTable& table : query.with) {
    if (RecursiveTable::isRecursive(table)) {
      recursive = true;
      tables.push_back(RecursiveTable(context, scope, table, query.maxRecursion).sql());
    } else {
      tables.push_back(commonTableSql(context, scope, table));
    }
  }
  if (tables.empty()) return {};
  return (recursive ? "WITH RECURSIVE " : "WITH ") + join(tables, ", ") + " ";
}

std::size_t positionOf(const std::vector<OutputColumn>& columns, const OrderItem& item) {
  if (const auto* number = std::get_if<IntegerLiteral>(&item.key->node)) {
    const std::size_t place = number->digits.size() < 6 ? std::stoul(number->digits) : 0;
    if (place >= 1 && place <= columns.size()) return place - 1;
    raiseAt(item.key->position, 108,
            "The ORDER BY position number " + number->digits +
                " is out of range of the number of items in the select list.");
  }
  if (const auto* name = std::get_if<ColumnReference>(&item.key->node)) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (sameName(columns[i].name, name->column.name)) return i;
    }
  }
  raiseAt(item.key->position, 104,
          "ORDER BY items must appear in the select list if the statement contains a UNION, "
          "INTERSECT or EXCEPT operator.");
}

/// A union is ordered by columns of its result only.
std::vector<OrderTerm> unionOrder(const BoundBody& body, const std::vector<OrderItem>& items) {
  std::vector<OrderTerm> terms;
  for (const OrderItem& item : items) {
    const std::size_t place = positionOf(body.columns, item);
    terms.push_back(
        {computed("", body.columns[place].type), item.descending, place, item.key->position});
  }
  return terms;
}

}  // namespace

BoundQuery bindQuery(Context& context, const QueryScope* outer, const Query& query) {
  BoundQuery result;
  QueryScope withScope;
  withScope.outer = outer;
  result.with = bindCommonTables(context, withScope, query);
  const bool united = !std::holds_alternative<Select>(query.body.node);
  BodyBinder binder(context, query.with.empty() ? outer : &withScope);
  result.body = binder.bind(query.body, query.orderBy);
  if (united) result.orderBy = unionOrder(result.body, query.orderBy);
  return result;
}

}  // namespace velmora::tsql
