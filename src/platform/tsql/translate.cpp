#include "platform/tsql/translate.h"

#include <algorithm>

#include "platform/tsql/binding/accumulation.h"
#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_query.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/output/change.h"
#include "platform/tsql/output/column_default.h"
#include "platform/tsql/output/definition.h"
#include "platform/tsql/output/query_text.h"
#include "platform/tsql/syntax/overloaded.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {
namespace {

constexpr QueryStages kQueryStages{bindQuery, queryText};

/// The first SELECT of a query, where INTO and assignments stand.
const Select& firstSelect(const QueryBody& body) {
  if (const auto* select = std::get_if<Select>(&body.node)) return *select;
  if (const auto* set = std::get_if<SetQuery>(&body.node)) return firstSelect(*set->left);
  return firstSelect(*std::get<UnionQuery>(body.node).first);
}

Rows rowsOf(Context& context, const BoundQuery& query) {
  Rows rows;
  for (const OutputColumn& column : columnsOf(query)) {
    SqlType type = column.type;
    if (type.kind == SqlKind::untypedNull) type = SqlType::integer();
    rows.columns.push_back({column.name, type, column.nullable});
  }
  rows.sql = orderedQueryText(context, query);
  return rows;
}

const Variable& requireVariable(Context& context, const std::string& name, Position position) {
  const auto found = context.scope.variables.find(name);
  if (found == context.scope.variables.end()) {
    raiseAt(position, 137, "Must declare the scalar variable \"" + name + "\".");
  }
  return found->second;
}

/// The variable after each of the steps: only its own change it.
std::string stepSql(Context& context, const BoundSelect& select, const std::string& name,
                    const SqlType& type) {
  std::string sql = "CASE x.k";
  for (std::size_t i = 0; i < select.steps.size(); ++i) {
    if (!sameName(select.variables[i], name)) continue;
    const Bound value = castTo(context, select.steps[i], type, select.outputs.front().position);
    sql += " WHEN " + std::to_string(i + 1) + " THEN " + castSql(exactSql(value), type);
  }
  return sql + " ELSE " + Accumulation::variableSql(name) + " END";
}

Assign assignOf(Context& context, const BoundQuery& query, const BoundSelect& select) {
  Assign assign;
  assign.variables = select.variables;
  std::vector<std::string> places;
  std::vector<std::string> values;
  for (std::size_t i = 0; i < select.outputs.size(); ++i) {
    const Position position = select.outputs[i].position;
    const Variable& variable = requireVariable(context, assign.variables[i], position);
    places.push_back(placeName(i));
    const Bound value = computed("q." + places.back(), columnsOf(query)[i].type);
    values.push_back(exactSql(castTo(context, value, variable.type, position)));
  }
  assign.sql = "SELECT " + join(values, ", ") + " FROM (" + orderedQueryText(context, query) +
               ") AS q(" + join(places, ", ") + ")";
  return assign;
}

/// Assignments that read each other: the engine goes through the rows' inputs, in order, and
/// makes one assignment of one row at a time.
Assign stepsOf(Context& context, const BoundQuery& query, const BoundSelect& select) {
  Assign assign;
  assign.counted = true;
  std::vector<std::string> before, after, results;
  for (std::size_t i = 0; i < select.variables.size(); ++i) {
    const std::string name = lowered(select.variables[i]);
    if (std::ranges::find(assign.variables, name) != assign.variables.end()) continue;
    const Variable& variable = requireVariable(context, name, select.outputs.front().position);
    assign.variables.push_back(name);
    before.push_back(quoteName(name) + " := " + literalSql(variable.value, variable.type));
    after.push_back(quoteName(name) + " := " + stepSql(context, select, name, variable.type));
    results.push_back("r.s." + quoteName(name));
  }
  std::vector<std::string> places, fields = {"k := g.k"};
  for (std::size_t i = 0; i < select.outputs.size(); ++i) {
    places.push_back(placeName(i));
    fields.push_back(places.back() + " := q." + places.back());
  }
  const std::string steps = "(SELECT q.*, row_number() OVER () AS o FROM (" +
                            orderedQueryText(context, query) + ") AS q(" + join(places, ", ") +
                            ")) AS q, range(1, " + std::to_string(select.steps.size() + 1) +
                            ") AS g(k)";
  assign.sql = "SELECT " + join(results, ", ") +
               ", r.n FROM (SELECT list_reduce(list(struct_pack(" + join(fields, ", ") +
               ") ORDER BY q.o, g.k), lambda s, x: struct_pack(" + join(after, ", ") +
               "), struct_pack(" + join(before, ", ") + ")) AS s, count(*) // " +
               std::to_string(select.steps.size()) + " AS n FROM " + steps + ") AS r";
  return assign;
}

Action translateSelect(Context& context, const SelectStatement& statement) {
  const Query& query = *statement.query;
  const Select& select = firstSelect(query.body);
  if (select.into) return translateSelectInto(context, query, *select.into);
  const BoundQuery bound = bindQuery(context, nullptr, query);
  const auto* only = std::get_if<BoundSelect>(&bound.body.node);
  if (only != nullptr && !only->steps.empty()) return stepsOf(context, bound, *only);
  if (only != nullptr && !only->variables.empty()) return assignOf(context, bound, *only);
  return rowsOf(context, bound);
}

Action translateNode(Context& context, const Statement& statement) {
  return std::visit(
      Overloaded{
          [&](const SelectStatement& node) { return translateSelect(context, node); },
          [&](const InsertStatement& node) -> Action { return translateInsert(context, node); },
          [&](const UpdateStatement& node) -> Action { return translateUpdate(context, node); },
          [&](const DeleteStatement& node) -> Action { return translateDelete(context, node); },
          [&](const TruncateStatement& node) -> Action { return translateTruncate(context, node); },
          [&](const CreateTableStatement& node) -> Action {
            return translateCreateTable(context, node);
          },
          [&](const AlterTableStatement& node) -> Action {
            return translateAlterTable(context, node);
          },
          [&](const CreateViewStatement& node) -> Action {
            return translateCreateView(context, node);
          },
          [&](const CreateIndexStatement& node) -> Action {
            return translateCreateIndex(context, node);
          },
          [&](const DropTableStatement& node) -> Action {
            return translateDropTable(context, node);
          },
          [&](const DropViewStatement& node) -> Action { return translateDropView(context, node); },
          [&](const DropIndexStatement& node) -> Action {
            return translateDropIndex(context, node);
          },
          [&](const auto&) -> Action {
            refuse(statement.position, "this statement as a query or change");
          },
      },
      statement.node);
}

/// A query of one row and one cell.
Translation cell(Context& context, std::string sql, const SqlType& type) {
  Rows rows;
  rows.sql = "SELECT " + std::move(sql);
  rows.columns.push_back({"", type, true});
  return {std::move(rows), std::move(context.functions)};
}

}  // namespace

Translation translateTableVariable(const CreateTableStatement& table, const Scope& scope) {
  Context context{scope, kQueryStages};
  Action action = translateCreateTable(context, table, true);
  return {std::move(action), std::move(context.functions)};
}

Translation translate(const Statement& statement, const Scope& scope) {
  Context context{scope, kQueryStages};
  Action action = translateNode(context, statement);
  return {std::move(action), std::move(context.functions)};
}

Translation translateCondition(const Expression& condition, const Scope& scope) {
  Context context{scope, kQueryStages};
  QueryScope names;
  names.aggregatesAllowed = false;
  const BoundCondition bound = ExpressionBinder(context, names).bindCondition(condition);
  return cell(context, "CAST(coalesce(" + bound.sql + ", FALSE) AS TINYINT)", SqlType::bit());
}

Translation translateValue(const Expression& value, const SqlType& type, const Scope& scope) {
  Context context{scope, kQueryStages};
  QueryScope names;
  names.aggregatesAllowed = false;
  const Bound bound = ExpressionBinder(context, names).bind(value);
  return cell(context, exactSql(castTo(context, bound, type, value.position)), type);
}

Translation translateDefault(const TableInfo& table, const ColumnInfo& column, const Scope& scope) {
  Context context{scope, kQueryStages};
  return cell(context, defaultSql(context, table, column), column.type);
}

}  // namespace velmora::tsql
