#include <algorithm>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/names/unique_match.h"
#include "platform/tsql/binding/order_rules.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/output/action.h"
#include "platform/tsql/output/change.h"
#include "platform/tsql/output/column_default.h"

namespace velmora::tsql {
namespace {

struct NewValue {
  const ColumnInfo* column;
  std::string sql;
};

/// Binds one UPDATE. Every expression sees the row's old values, also where the target
/// is read a second time in the same statement.
class UpdateBinder {
 public:
  UpdateBinder(Context& context, const UpdateStatement& statement)
      : context_(context), statement_(statement), binder_(context, scope_) {}

  Change bind() {
    scope_.aggregatesAllowed = false;
    target_ = bindTarget(context_, scope_, statement_.target, statement_.from);
    for (const Assignment& assignment : statement_.assignments) bindAssignment(assignment);
    if (statement_.where) where_ = binder_.bindCondition(*statement_.where);
    once_ = meetsOnce(scope_, *target_.source, statement_.from, statement_.where);
    top_ = changeTop(binder_, statement_.top);
    const bool direct = !top_ && once_ && target_.from.inner && !readsTargetAgain();
    Change change;
    change.sql = direct ? directSql() : joinedSql();
    change.table = target_.table->name;
    addOutput(context_, change, *target_.table, statement_.output, {"inserted"});
    return change;
  }

 private:
  void bindAssignment(const Assignment& assignment) {
    const QualifiedName& name = assignment.column;
    const ColumnInfo& column = requireColumn(*target_.table, name.name, name.position);
    checkTarget(name, column);
    requireStored(column, name.position);
    const bool isDefault = std::holds_alternative<DefaultLiteral>(assignment.value->node);
    const std::string label = target_.table->name + "." + column.name;
    values_.push_back(
        {&column, isDefault ? defaultSql(context_, *target_.table, column)
                            : exactSql(assignTo(context_, binder_.bind(*assignment.value),
                                                column.type, label, assignment.value->position))});
  }

  void checkTarget(const QualifiedName& name, const ColumnInfo& column) const {
    if (!name.qualifiers.empty() && !sameName(name.qualifiers.back(), target_.source->alias) &&
        !sameName(name.qualifiers.back(), target_.table->name)) {
      raiseAt(name.position, 4104,
              "The multi-part identifier \"" + name.qualifiers.back() + "." + name.name +
                  "\" could not be bound.");
    }
    if (column.identity) {
      raiseAt(name.position, 8102, "Cannot update identity column '" + column.name + "'.");
    }
    const auto same = [&](const NewValue& value) { return value.column == &column; };
    if (std::ranges::any_of(values_, same)) {
      raiseAt(name.position, 264,
              "The column name '" + column.name + "' is specified more than once.");
    }
  }

  /// Whether the engine would still read the target while it changes it.
  bool readsTargetAgain() const {
    const auto settled = context_.settledUses.find(target_.table);
    const int over = settled == context_.settledUses.end() ? 0 : settled->second;
    return context_.tableUses.at(target_.table) - over > 1;
  }

  std::string whereSql() const { return where_ ? " WHERE " + where_->sql : std::string(); }

  /// UPDATE ... FROM as the engine has it: the target stands before the other sources.
  std::string directSql() const {
    std::vector<std::string> sets;
    for (const NewValue& value : values_) {
      sets.push_back(quoteName(value.column->nameInEngine()) + " = " + value.sql);
    }
    const auto place = static_cast<std::size_t>(target_.source - scope_.sources.data());
    std::vector<std::string> others = target_.from.relations;
    const std::string own = others[place];
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(place));
    std::vector<BoundCondition> conditions = target_.from.conditions;
    if (where_) conditions.push_back(*where_);
    return "UPDATE " + own + " SET " + join(sets, ", ") +
           (others.empty() ? "" : " FROM " + join(others, ", ")) +
           (conditions.empty() ? "" : " WHERE " + combine(LogicalOperator::And, conditions).sql);
  }

  /// The new values are found by row number first. Where a row may meet several rows of
  /// the other tables, the first in their natural order counts.
  std::string joinedSql() const {
    const std::string rowId = rowNumberSql(target_);
    std::vector<std::string> sets;
    std::string rows = rowId + " AS rid";
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const std::string place = placeName(i);
      rows += ", " + values_[i].sql + " AS " + place;
      sets.push_back(quoteName(values_[i].column->nameInEngine()) + " = s." + place);
    }
    rows += " FROM " + target_.from.sql + whereSql();
    std::string select = once_ ? "SELECT " + rows
                               : "SELECT DISTINCT ON (" + rowId + ") " + rows + " ORDER BY " +
                                     rowId + firstMatch(rowId);
    if (top_) select += (once_ ? " ORDER BY " + rowId : "") + " LIMIT " + std::to_string(*top_);
    // Without a sort the engine would read and change the table in one go.
    const bool settle = once_ && readsTargetAgain();
    const std::string update =
        "UPDATE " + target_.table->engineName + " AS u SET " + join(sets, ", ") + " FROM ";
    if (settle) {
      return "WITH s AS MATERIALIZED (" + select + ") " + update + "s WHERE u.rowid = s.rid";
    }
    return update + "(" + select + ") AS s WHERE u.rowid = s.rid";
  }

  std::string firstMatch(const std::string& rowId) const {
    std::string terms;
    for (const std::string& term : naturalOrder(scope_, statement_.from, statement_.where)) {
      if (!term.starts_with(rowId + " ")) terms += ", " + term;
    }
    return terms;
  }

  Context& context_;
  const UpdateStatement& statement_;
  QueryScope scope_;
  ExpressionBinder binder_;
  ChangeTarget target_;
  std::vector<NewValue> values_;
  std::optional<BoundCondition> where_;
  std::optional<std::int64_t> top_;
  bool once_ = false;
};

}  // namespace

Change translateUpdate(Context& context, const UpdateStatement& statement) {
  return UpdateBinder(context, statement).bind();
}

Change translateDelete(Context& context, const DeleteStatement& statement) {
  QueryScope scope;
  scope.aggregatesAllowed = false;
  const ChangeTarget target = bindTarget(context, scope, statement.target, statement.from);
  ExpressionBinder binder(context, scope);
  const std::string where =
      statement.where ? " WHERE " + binder.bindCondition(*statement.where).sql : "";
  const auto top = changeTop(binder, statement.top);
  const std::string rowId = rowNumberSql(target);
  Change change;
  change.table = target.table->name;
  change.sql = "DELETE FROM " + target.table->engineName;
  if (top) {
    change.sql += " WHERE rowid IN (SELECT DISTINCT " + rowId + " FROM " + target.from.sql + where +
                  " ORDER BY " + rowId + " LIMIT " + std::to_string(*top) + ")";
  } else if (!where.empty() || scope.sources.size() > 1) {
    change.sql += " WHERE rowid IN (SELECT " + rowId + " FROM " + target.from.sql + where + ")";
  }
  addOutput(context, change, *target.table, statement.output, {"deleted"});
  return change;
}

}  // namespace velmora::tsql
