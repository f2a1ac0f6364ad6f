#include "platform/tsql/binding/bind_select.h"

#include <algorithm>

#include "platform/tsql/binding/accumulation.h"
#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/bind_from.h"
#include "platform/tsql/binding/bound_query.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/names/unique_match.h"
#include "platform/tsql/binding/order_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/overloaded.h"

namespace velmora::tsql {
namespace {

const Expression* valueOf(const SelectItem& item) {
  return std::visit(
      Overloaded{[](const StarItem&) -> const Expression* { return nullptr; },
                 [](const auto& node) -> const Expression* { return node.value.get(); }},
      item.node);
}

bool isGrouped(const Select& select, const std::vector<OrderItem>& orderBy) {
  if (select.groupBy || select.having) return true;
  const auto aggregates = [](const Expression* value) {
    return value != nullptr && containsAggregate(*value);
  };
  return std::ranges::any_of(select.items,
                             [&](const SelectItem& item) { return aggregates(valueOf(item)); }) ||
         std::ranges::any_of(orderBy,
                             [&](const OrderItem& item) { return aggregates(item.key.get()); });
}

/// Binds one SELECT clause by clause.
class SelectBinder {
 public:
  SelectBinder(Context& context, QueryScope& scope, const Select& select,
               const std::vector<OrderItem>& orderBy)
      : scope_(scope), select_(select), orderBy_(orderBy), binder_(context, scope) {}

  BoundSelect bind() {
    scope_.aggregatesAllowed = false;
    scope_.windowsAllowed = false;
    bindTop();
    bindSources();
    bindGroups();
    scope_.grouped = isGrouped(select_, orderBy_);
    scope_.aggregatesAllowed = true;
    scope_.windowsAllowed = true;
    prepareAssignments();
    for (const SelectItem& item : select_.items) bindItem(item);
    finishAssignments();
    scope_.windowsAllowed = false;
    if (select_.having) {
      result_.body += " HAVING " + binder_.bindCondition(*select_.having).sql;
    }
    result_.grouped = scope_.grouped;
    result_.distinct = select_.distinct;
    scope_.windowsAllowed = true;
    for (const OrderItem& item : orderBy_) bindOrder(item);
    bindNaturalOrder();
    result_.uniqueKey = uniqueKey();
    return std::move(result_);
  }

 private:
  bool rollup() const { return select_.groupBy && select_.groupBy->rollup; }

  void bindTop() {
    if (!select_.top) return;
    if (select_.withTies && orderBy_.empty()) {
      raiseAt(select_.top->position, 1062, "TOP WITH TIES is not allowed without ORDER BY.");
    }
    if (select_.distinct && (select_.withTies || select_.percent)) {
      refuse(select_.top->position, "TOP PERCENT or WITH TIES beside DISTINCT");
    }
    const Bound top = binder_.bind(*select_.top);
    result_.withTies = select_.withTies;
    if (select_.percent) return bindPercent(top);
    if (!top.constant || !top.type.isInteger() || top.isNull() || top.constant->toInt64() < 0) {
      raiseAt(select_.top->position, 1060,
              "The number of rows provided for TOP must be an integer of 0 or more.");
    }
    result_.top = top.constant->toInt64();
  }

  void bindPercent(const Bound& top) {
    const bool number = top.constant && top.type.isNumber() && !top.isNull();
    if (!number || top.constant->toDouble() < 0 || top.constant->toDouble() > 100) {
      raiseAt(select_.top->position, 1031, "Percent values must be between 0 and 100.");
    }
    result_.topPercent = castSql(top.sql, SqlType::floating());
  }

  void bindSources() {
    if (!select_.from.empty()) {
      result_.body = " FROM " + bindFrom(binder_.context(), scope_, select_.from).sql;
    }
    if (select_.where) result_.body += " WHERE " + binder_.bindCondition(*select_.where).sql;
  }

  void bindGroups() {
    if (!select_.groupBy) return;
    std::vector<std::string> groups;
    for (const ExpressionPtr& expression : select_.groupBy->keys) {
      scope_.keys.push_back(groupKey(*expression));
      groups.push_back(scope_.keys.back().groupSql);
    }
    const std::string list = join(groups, ", ");
    result_.body += " GROUP BY " + (rollup() ? "ROLLUP (" + list + ")" : list);
  }

  /// Texts that differ in case or trailing blanks are one group; it shows one of them,
  /// the same every time.
  GroupKey groupKey(const Expression& expression) {
    const Bound key = binder_.bind(expression);
    if (key.constant) {
      raiseAt(expression.position, 164,
              "Each GROUP BY expression must contain at least one column that is not an outer "
              "reference.");
    }
    GroupKey result{key.sql, keySql(key), key.sql, expression.node.index(), key.type};
    if (!key.type.isText()) return result;
    result.valueSql = "min(" + key.sql + ")";
    if (rollup()) {
      result.valueSql =
          "(CASE WHEN grouping(" + result.groupSql + ") = 0 THEN " + result.valueSql + " END)";
    }
    return result;
  }

  void bindItem(const SelectItem& item) {
    std::visit(Overloaded{
                   [&](const StarItem& star) { bindStar(star, item.position); },
                   [&](const ColumnItem& column) {
                     add(column.alias.value_or(columnName(*column.value)),
                         binder_.bind(*column.value), item.position);
                   },
                   [&](const AssignmentItem& assignment) {
                     result_.variables.push_back(assignment.variable);
                     bindAssignment(*assignment.value, item.position);
                   },
               },
               item.node);
  }

  /// Whether at most one row comes: then only what stands before an assignment counts.
  bool hasOneRow() const {
    return select_.from.empty() || (scope_.grouped && !select_.groupBy) ||
           (result_.top == 1 && !result_.withTies);
  }

  /// Assignments that read what others, or the row before, assigned are made one by one.
  void prepareAssignments() {
    if (!std::holds_alternative<AssignmentItem>(select_.items.front().node)) return;
    scope_.accumulation = &steps_;
    std::set<std::string, IgnoreCase> before;
    for (const SelectItem& item : select_.items) {
      if (!hasOneRow()) before.insert(std::get<AssignmentItem>(item.node).variable);
    }
    if (!hasOneRow()) steps_.pending = before;
    for (const SelectItem& item : select_.items) {
      const auto& assignment = std::get<AssignmentItem>(item.node);
      stepwise_ = stepwise_ || readsVariable(*assignment.value, before);
      before.insert(assignment.variable);
    }
    const auto isPlace = [](const OrderItem& item) {
      return std::holds_alternative<IntegerLiteral>(item.key->node);
    };
    if (stepwise_ && (select_.distinct || std::ranges::any_of(orderBy_, isPlace))) {
      refuse(select_.items.front().position,
             "DISTINCT or an order by place beside assignments that read each other");
    }
  }

  void bindAssignment(const Expression& value, Position position) {
    if (!stepwise_) {
      add("", binder_.bind(value), position);
    } else if (readsVariable(value, steps_.pending)) {
      steps_.stepwise = true;
      result_.steps.push_back(binder_.bind(value));
      steps_.stepwise = false;
    } else {
      result_.steps.push_back(steps_.input(binder_.bind(value), position));
    }
    steps_.pending.insert(result_.variables.back());
  }

  void finishAssignments() {
    scope_.accumulation = nullptr;
    if (!stepwise_) return;
    result_.outputs = std::move(steps_.inputs);
    if (result_.outputs.empty()) {
      add("", constantOf(std::int64_t{1}, SqlType::integer()), select_.items.front().position);
    }
  }

  static std::string columnName(const Expression& expression) {
    const auto* reference = std::get_if<ColumnReference>(&expression.node);
    return reference != nullptr ? reference->column.name : std::string();
  }

  void add(std::string name, Bound value, Position position) {
    result_.outputs.push_back({std::move(name), std::move(value), position});
  }

  void bindStar(const StarItem& star, Position position) {
    if (star.qualifier) {
      const Source* source = findSource(scope_, star.qualifier->name);
      if (source == nullptr) {
        raiseAt(position, 107,
                "The column prefix '" + star.qualifier->name +
                    "' does not match with a table name or alias name used in the query.");
      }
      addAll(*source, position);
      return;
    }
    if (scope_.sources.empty()) raiseAt(position, 263, "Must specify table to select from.");
    for (const Source& source : scope_.sources) addAll(source, position);
  }

  void addAll(const Source& source, Position position) {
    for (const SourceColumn& column : source.columns) {
      Expression expression{position, ColumnReference{{position, {source.alias}, column.name}}};
      add(column.name, binder_.bind(expression), position);
    }
  }

  void bindOrder(const OrderItem& item) {
    OrderTerm term;
    term.descending = item.descending;
    term.position = item.key->position;
    term.output = outputOf(*item.key);
    if (term.output) {
      term.value = result_.outputs[*term.output].value;
    } else {
      term.value = binder_.bind(*item.key);
      term.output = sameOutput(term.value);
    }
    if (select_.distinct && !term.output) {
      raiseAt(term.position, 145,
              "ORDER BY items must appear in the select list if SELECT DISTINCT is specified.");
    }
    result_.orderBy.push_back(std::move(term));
  }

  /// The column of the result that a place or an alias names.
  std::optional<std::size_t> outputOf(const Expression& key) const {
    if (const auto* number = std::get_if<IntegerLiteral>(&key.node)) {
      const auto place = number->digits.size() < 6 ? std::stoul(number->digits) : 0;
      if (place < 1 || place > result_.outputs.size()) {
        raiseAt(key.position, 108,
                "The ORDER BY position number " + number->digits +
                    " is out of range of the number of items in the select list.");
      }
      return place - 1;
    }
    const auto* reference = std::get_if<ColumnReference>(&key.node);
    if (reference == nullptr || !reference->column.qualifiers.empty()) return std::nullopt;
    return aliased(reference->column);
  }

  std::optional<std::size_t> aliased(const QualifiedName& name) const {
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < result_.outputs.size(); ++i) {
      if (!sameName(result_.outputs[i].name, name.name)) continue;
      if (found && result_.outputs[*found].value.sql != result_.outputs[i].value.sql) {
        raiseAt(name.position, 209, "Ambiguous column name '" + name.name + "'.");
      }
      if (!found) found = i;
    }
    return found;
  }

  std::optional<std::size_t> sameOutput(const Bound& value) const {
    for (std::size_t i = 0; i < result_.outputs.size(); ++i) {
      if (result_.outputs[i].value.sql == value.sql) return i;
    }
    return std::nullopt;
  }

  void bindNaturalOrder() {
    if (comesInOrder(scope_) && orderBy_.empty()) return;
    result_.naturalOrder = scope_.grouped ? groupOrder(scope_, rollup())
                                          : naturalOrder(scope_, select_.from, select_.where);
  }

  /// A grouped query's rows differ in its keys, others in those of their sources, where it
  /// shows them all.
  std::optional<std::vector<std::string>> uniqueKey() const {
    if (rollup() || select_.distinct) return std::nullopt;
    std::vector<std::string> names;
    const bool shown = scope_.grouped ? addGroups(names) : addSourceKeys(names);
    return shown ? std::optional(names) : std::nullopt;
  }

  bool addGroups(std::vector<std::string>& names) const {
    return std::ranges::all_of(scope_.keys,
                               [&](const GroupKey& key) { return addOutput(names, key.valueSql); });
  }

  bool addSourceKeys(std::vector<std::string>& names) const {
    for (const auto& [source, ignored] : decidingSources(scope_, select_.from, select_.where)) {
      const auto key = rowKey(*source);
      if (!key) return false;
      for (const SourceColumn* column : *key)
        if (!addOutput(names, source->columnSql(*column))) return false;
    }
    return true;
  }

  /// Adds the column of the result that has this value.
  bool addOutput(std::vector<std::string>& names, const std::string& sql) const {
    const auto output = std::ranges::find_if(
        result_.outputs, [&](const OutputValue& one) { return one.value.sql == sql; });
    if (output == result_.outputs.end()) return false;
    names.push_back(output->name);
    return true;
  }

  QueryScope& scope_;
  const Select& select_;
  const std::vector<OrderItem>& orderBy_;
  ExpressionBinder binder_;
  Accumulation steps_;
  bool stepwise_ = false;
  BoundSelect result_;
};

}  // namespace

BoundSelect bindSelect(Context& context, QueryScope& scope, const Select& select,
                       const std::vector<OrderItem>& orderBy) {
  return SelectBinder(context, scope, select, orderBy).bind();
}

}  // namespace velmora::tsql
