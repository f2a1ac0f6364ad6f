#include "platform/tsql/translate.h"

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_query.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/output/change.h"
#include "platform/tsql/output/column_default.h"
#include "platform/tsql/output/definition.h"
#include "platform/tsql/output/query_text.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

constexpr QueryStages kQueryStages{bindQuery, queryText};

/// The first SELECT of a query, where INTO and assignments stand.
const Select& firstSelect(const QueryBody& body) {
  if (const auto* select = std::get_if<Select>(&body.node)) return *select;
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

Action translateSelect(Context& context, const SelectStatement& statement) {
  const Query& query = *statement.query;
  const Select& select = firstSelect(query.body);
  if (select.into) return translateSelectInto(context, query, *select.into);
  const BoundQuery bound = bindQuery(context, nullptr, query);
  const auto* only = std::get_if<BoundSelect>(&bound.body.node);
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
