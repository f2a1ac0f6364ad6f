#include <algorithm>
#include <array>

#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/conversions/conversion_number.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/order_rules.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

/// One aggregate being bound: its argument and how often its values count.
struct Aggregate {
  const Call& call;
  Bound argument;
  std::string distinct;  // "DISTINCT " or nothing
  std::string over;      // the window clause or nothing

  std::string sql(std::string_view name, std::string_view of) const {
    std::string text(name);
    return text.append("(").append(distinct).append(of).append(")").append(over);
  }
};

[[noreturn]] void refuseOperand(const Aggregate& aggregate) {
  raiseAt(aggregate.call.position(), 8117,
          "Operand data type " + declaration(aggregate.argument.type) + " is invalid for " +
              aggregate.call.syntax().name + " operator.");
}

Bound sum(const Aggregate& aggregate) {
  const Bound& argument = aggregate.argument;
  if (!argument.type.isNumber() || argument.type.kind == SqlKind::bit) refuseOperand(aggregate);
  Bound result =
      computed(aggregate.sql("sum", exactSql(argument)), sumType(argument.type), argument.canFail);
  if (argument.type.isApproximate()) {
    result.sql = engine::finite(result.sql, false);
  } else if (argument.type.isMoney()) {
    const SqlType wide = SqlType::decimal(38, argument.type.scale);
    return inMoneyRange(aggregate.call.binder().context(), computed(result.sql, wide), result.type);
  } else if (argument.type.isInteger()) {
    result.sql = castSql(result.sql, result.type);
  }
  return result;
}

/// The average of decimals is a quotient like any other, exact to its last digit.
Bound average(const Aggregate& aggregate) {
  const Bound& argument = aggregate.argument;
  if (!argument.type.isNumber() || argument.type.kind == SqlKind::bit) refuseOperand(aggregate);
  const SqlType type = averageType(argument.type);
  if (argument.type.isApproximate()) {
    return computed(aggregate.sql("avg", argument.sql), type, argument.canFail);
  }
  const std::string total = aggregate.sql("sum", exactSql(argument));
  const std::string count = aggregate.sql("count", argument.sql);
  if (argument.type.isInteger()) {
    return computed(castSql("(" + total + " // " + count + ")", type), type, argument.canFail);
  }
  const int scale = argument.type.scale;
  const std::string name = aggregate.call.binder().context().require(
      {DecimalFunction::Operation::divide, scale, 0, type.scale});
  const SqlType wide = SqlType::decimal(38, scale);
  return computed(castSql(name + "(" + castSql(total, wide) + ", CAST(nullif(" + count +
                              ", 0) AS DECIMAL(38,0)))",
                          type),
                  type, argument.canFail);
}

/// The smallest or largest; of texts that differ only in case one is chosen the same way
/// every time.
Bound extreme(const Aggregate& aggregate, std::string_view name) {
  const Bound& argument = aggregate.argument;
  if (argument.type.kind == SqlKind::bit) refuseOperand(aggregate);
  Bound result = computed(aggregate.sql(name, argument.sql), argument.type, argument.canFail);
  result.exact = argument.exact;
  if (argument.type.isText()) {
    if (!aggregate.over.empty()) refuse(aggregate.call.position(), "min or max of texts with OVER");
    result.sql = "(" +
                 aggregate.sql(name, "struct_pack(k := " + keySql(argument) +
                                         ", v := " + argument.sql + ")") +
                 " FILTER (WHERE " + argument.sql + " IS NOT NULL)).v";
  }
  return result;
}

Bound count(const Aggregate& aggregate) {
  const bool big = aggregate.call.syntax().name == "count_big";
  const SqlType type = big ? SqlType::of(SqlKind::bigInt) : SqlType::integer();
  const bool star = aggregate.call.syntax().star;
  const std::string of =
      star ? "*"
           : (aggregate.distinct.empty() ? aggregate.argument.sql : keySql(aggregate.argument));
  return computed(castSql(aggregate.sql("count", of), type), type, aggregate.argument.canFail);
}

/// Whether the row is a total over this key.
Bound grouping(const Call& call) {
  QueryScope& scope = call.binder().scope();
  const Bound argument = call.binder().bindAggregateArgument(call.expression(0));
  for (const GroupKey& key : scope.keys) {
    if (key.plainSql == argument.sql) {
      const SqlType type = SqlType::of(SqlKind::tinyInt);
      return computed(castSql("grouping(" + key.groupSql + ")", type), type);
    }
  }
  raiseAt(call.position(), 8161,
          "Argument 1 of the GROUPING function does not match any of the expressions in the "
          "GROUP BY clause.");
}

void checkAllowed(const Call& call) {
  const QueryScope& scope = call.binder().scope();
  if (scope.insideAggregate) {
    raiseAt(call.position(), 130,
            "Cannot perform an aggregate function on an expression containing an aggregate or a "
            "subquery.");
  }
  if (!scope.aggregatesAllowed) {
    raiseAt(call.position(), 147,
            "An aggregate may not appear in the WHERE or ON clause unless it is in a subquery "
            "contained in a HAVING clause or a select list.");
  }
}

void checkCount(const Call& call) {
  const std::size_t wanted = call.syntax().star ? 0 : 1;
  if (call.count() != wanted) {
    raiseAt(call.position(), 174,
            "The " + call.syntax().name + " function requires 1 argument(s), not " +
                std::to_string(call.count()) + ".");
  }
}

Bound bindKnown(const Aggregate& aggregate) {
  const std::string& name = aggregate.call.syntax().name;
  if (name == "sum") return sum(aggregate);
  if (name == "avg") return average(aggregate);
  if (name == "min" || name == "max") return extreme(aggregate, name);
  return count(aggregate);
}

std::string windowSql(const Call& call) {
  std::string sql;
  for (const ExpressionPtr& key : call.syntax().over->partitionBy) {
    sql.append(sql.empty() ? "PARTITION BY " : ", ").append(keySql(call.binder().bind(*key)));
  }
  bool first = true;
  for (const OrderItem& item : call.syntax().over->orderBy) {
    sql.append(first ? (sql.empty() ? "ORDER BY " : " ORDER BY ") : ", ");
    sql += orderTerm(call.binder().bind(*item.key), item.descending);
    first = false;
  }
  return " OVER (" + sql + ")";
}

}  // namespace

Bound bindAggregate(const Call& call) {
  checkCount(call);
  checkAllowed(call);
  if (call.syntax().name == "grouping") return grouping(call);
  Bound argument;
  if (!call.syntax().star) argument = call.binder().bindAggregateArgument(call.expression(0));
  return bindKnown({call, std::move(argument), call.syntax().distinct ? "DISTINCT " : "", ""});
}

Bound bindWindowFunction(const Call& call) {
  static constexpr auto kRankings =
      std::to_array<std::string_view>({"row_number", "rank", "dense_rank"});
  const std::string& name = call.syntax().name;
  if (std::ranges::find(kRankings, name) != kRankings.end()) {
    const SqlType type = SqlType::of(SqlKind::bigInt);
    return computed(castSql(name + "()" + windowSql(call), type), type);
  }
  if (!isAggregate(name) || name == "grouping") {
    refuse(call.position(), "the function " + name + " with OVER");
  }
  checkCount(call);
  Bound argument;
  if (!call.syntax().star) argument = call.argument(0);
  return bindKnown(
      {call, std::move(argument), call.syntax().distinct ? "DISTINCT " : "", windowSql(call)});
}

}  // namespace velmora::tsql
