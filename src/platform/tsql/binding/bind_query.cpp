#include "platform/tsql/binding/bind_query.h"

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
                                 [&](const UnionQuery& united) { return bindUnion(united); }},
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

  static void merge(std::vector<OutputColumn>& columns, const std::vector<OutputColumn>& more,
                    Position position) {
    if (columns.size() != more.size()) {
      raiseAt(position, 205,
              "All queries combined using a UNION operator must have an equal number of "
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

std::string bindCommonTables(Context& context, QueryScope& scope, const Query& query) {
  std::string sql;
  for (const CommonTable& table : query.with) {
    const BoundQuery bound = bindQuery(context, &scope, *table.query);
    CommonTableInfo info{quoteName(table.name), {}};
    const auto& outputs = columnsOf(bound);
    if (!table.columns.empty() && table.columns.size() != outputs.size()) {
      raiseAt(table.position, 8158,
              "'" + table.name + "' has a different number of columns than its column list.");
    }
    std::vector<std::string> names;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      const std::string& name = table.columns.empty() ? outputs[i].name : table.columns[i];
      if (name.empty()) {
        raiseAt(table.position, 8155,
                "No column name was specified for column " + std::to_string(i + 1) + " of '" +
                    table.name + "'.");
      }
      info.columns.push_back({name, outputs[i].type, outputs[i].nullable});
      names.push_back(quoteName(name));
    }
    sql += (sql.empty() ? "WITH " : ", ") + info.engine + "(" + join(names, ", ") + ") AS (" +
           context.queries.text(context, bound, typesOf(bound)) + ")";
    scope.commonTables[table.name] = std::move(info);
  }
  return sql.empty() ? sql : sql + " ";
}

std::size_t positionOf(const std::vector<OutputColumn>& columns, const OrderItem& item) {
  if (const auto* number = std::get_if<IntegerLiteral>(&item.key->node)) {
    const std::size_t place = std::stoul(number->digits);
    if (place >= 1 && place <= columns.size()) return place - 1;
  }
  if (const auto* name = std::get_if<ColumnReference>(&item.key->node)) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (sameName(columns[i].name, name->column.name)) return i;
    }
  }
  raiseAt(item.key->position, 104,
          "ORDER BY items must appear in the select list if the statement contains a UNION "
          "operator.");
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
  const bool united = std::holds_alternative<UnionQuery>(query.body.node);
  BodyBinder binder(context, query.with.empty() ? outer : &withScope);
  result.body = binder.bind(query.body, query.orderBy);
  if (united) result.orderBy = unionOrder(result.body, query.orderBy);
  return result;
}

}  // namespace velmora::tsql
