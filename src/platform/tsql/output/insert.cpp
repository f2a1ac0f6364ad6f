#include <algorithm>
#include <map>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_query.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/find_table.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/output/action.h"
#include "platform/tsql/output/change.h"
#include "platform/tsql/output/column_default.h"
#include "platform/tsql/output/query_text.h"

namespace velmora::tsql {
namespace {

/// Binds one INSERT: which column takes which of the given values.
class InsertBinder {
 public:
  InsertBinder(Context& context, const InsertStatement& statement)
      : context_(context),
        statement_(statement),
        position_(statement.table.position),
        table_(requireTable(context, statement.table)) {
    requireChangeable(context, table_, position_);
    chooseColumns();
  }

  Change bind() {
    Change change;
    const auto* rows = std::get_if<ValueRows>(&statement_.source);
    change.sql =
        "INSERT INTO " + table_.engineName + " (" + columnNames() + ") " +
        (rows != nullptr ? valuesSql(*rows) : querySql(*std::get<QueryPtr>(statement_.source)));
    if (identity() != nullptr) change.identityTable = table_.name;
    change.table = table_.name;
    change.insert = true;
    addOutput(context_, change, table_, statement_.output, {"inserted"});
    return change;
  }

 private:
  void chooseColumns() {
    if (!statement_.columns.empty()) {
      for (const std::string& name : statement_.columns)
        add(requireColumn(table_, name, position_));
      return;
    }
    if (statement_.defaultValues) return;
    for (const ColumnInfo& column : table_.columns) {
      if (!column.identity && !column.computed) targets_.push_back(&column);
    }
  }

  void add(const ColumnInfo& column) {
    if (column.identity) {
      raiseAt(position_, 544,
              "Cannot insert explicit value for identity column in table '" + table_.name + "'.");
    }
    requireStored(column, position_);
    if (std::ranges::find(targets_, &column) != targets_.end()) {
      raiseAt(position_, 264, "The column name '" + column.name + "' is specified more than once.");
    }
    targets_.push_back(&column);
  }

  const ColumnInfo* identity() const {
    const auto found = std::ranges::find_if(
        table_.columns, [](const ColumnInfo& column) { return column.identity.has_value(); });
    return found == table_.columns.end() ? nullptr : &*found;
  }

  std::string columnNames() const {
    std::vector<std::string> names;
    for (const ColumnInfo& column : table_.columns) {
      if (!column.computed) names.push_back(quoteName(column.nameInEngine()));
    }
    return join(names, ", ");
  }

  void checkCount(std::size_t count, Position position) const {
    if (count == targets_.size()) return;
    const bool named = !statement_.columns.empty();
    raiseAt(position, named ? 110 : 213,
            "Table '" + table_.name + "': " + std::to_string(count) + " values for " +
                std::to_string(targets_.size()) + " columns.");
  }

  /// One row: `value(n)` for the n-th target column, `number` for the identity column,
  /// the default for all others.
  template <class Value>
  std::string row(Value value, const std::string& number) {
    std::vector<std::string> cells;
    for (const ColumnInfo& column : table_.columns) {
      if (column.computed) continue;
      const auto target = std::ranges::find(targets_, &column);
      if (column.identity) {
        cells.push_back(number);
      } else if (target == targets_.end()) {
        cells.push_back(defaultOf(column));
      } else {
        cells.push_back(value(static_cast<std::size_t>(target - targets_.begin())));
      }
    }
    return join(cells, ", ");
  }

  /// Bound once for all rows.
  const std::string& defaultOf(const ColumnInfo& column) {
    std::string& sql = defaults_[&column];
    if (sql.empty()) sql = defaultSql(context_, table_, column);
    return sql;
  }

  std::string stored(const Bound& value, const ColumnInfo& column, Position position) {
    return exactSql(assignTo(context_, value, column.type, columnLabel(column), position));
  }

  std::string columnLabel(const ColumnInfo& column) const {
    return table_.name + "." + column.name;
  }

  std::string valuesSql(const ValueRows& rows) {
    QueryScope scope;
    scope.aggregatesAllowed = false;
    ExpressionBinder binder(context_, scope);
    std::vector<std::string> lines;
    for (const auto& values : rows) {
      checkCount(values.size(), position_);
      const std::string number = identityValue(lines.size());
      lines.push_back(
          "(" + row([&](std::size_t i) { return cell(binder, *values[i], i); }, number) + ")");
    }
    return "VALUES " + join(lines, ", ");
  }

  std::string cell(ExpressionBinder& binder, const Expression& value, std::size_t index) {
    const ColumnInfo& column = *targets_[index];
    if (std::holds_alternative<DefaultLiteral>(value.node)) return defaultOf(column);
    return stored(binder.bind(value), column, value.position);
  }

  std::string identityValue(std::size_t rowIndex) const {
    const ColumnInfo* column = identity();
    if (column == nullptr) return "";
    const std::int64_t number = context_.scope.catalog.nextIdentity(table_) +
                                static_cast<std::int64_t>(rowIndex) * column->identity->increment;
    return literalSql(number, column->type);
  }

  /// Rows are numbered in the order the query gives them, whatever the engine's threads do.
  std::string identityNumber() const {
    const ColumnInfo* column = identity();
    if (column == nullptr) return "";
    const std::int64_t increment = column->identity->increment;
    return castSql(std::to_string(context_.scope.catalog.nextIdentity(table_) - increment) +
                       " + row_number() OVER () * " + std::to_string(increment),
                   column->type);
  }

  std::string querySql(const Query& query) {
    const BoundQuery bound = bindQuery(context_, nullptr, query);
    const auto& columns = columnsOf(bound);
    checkCount(columns.size(), query.body.position);
    const std::vector<SqlType> types = typesToSort(bound);
    std::vector<std::string> places;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      places.push_back(placeName(i));
    }
    const auto value = [&](std::size_t i) {
      return stored(computed("q." + places[i], types[i]), *targets_[i], query.body.position);
    };
    return "SELECT " + row(value, identityNumber()) + " FROM (" +
           orderedQueryText(context_, bound, types) + ") AS q(" + join(places, ", ") + ")";
  }

  /// The types of the rows before they are put in order. Amounts have their columns' width
  /// there already: behind the sort the engine works on one thread.
  std::vector<SqlType> typesToSort(const BoundQuery& bound) const {
    const auto* select = std::get_if<BoundSelect>(&bound.body.node);
    const bool cut = select != nullptr && select->isLimited();  // what is cut off may be too wide
    std::vector<SqlType> types;
    for (const OutputColumn& column : columnsOf(bound)) {
      const SqlType& target = targets_[types.size()]->type;
      const bool sameScale =
          target.isDecimal() && column.type.isDecimal() && target.scale == column.type.scale;
      types.push_back(sameScale && !cut ? target : column.type);
    }
    return types;
  }

  Context& context_;
  const InsertStatement& statement_;
  Position position_;
  const TableInfo& table_;
  std::vector<const ColumnInfo*> targets_;
  std::map<const ColumnInfo*, std::string> defaults_;
};

}  // namespace

Change translateInsert(Context& context, const InsertStatement& statement) {
  return InsertBinder(context, statement).bind();
}

}  // namespace velmora::tsql
