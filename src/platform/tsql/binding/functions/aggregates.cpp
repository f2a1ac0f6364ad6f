#include <algorithm>
#include <array>
#include <utility>

#include "platform/tsql/binding/aggregate_search.h"
#include "platform/tsql/binding/conversions/conversion.h"
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
  if (argument.type.kind == SqlKind::bit || argument.type.kind == SqlKind::untypedNull) {
    refuseOperand(aggregate);
  }
  Bound result = computed(aggregate.sql(name, argument.sql), argument.type, argument.canFail);
  result.exact = argument.exact;
  if (argument.type.isText()) {
    result.sql = "(" + std::string(name) + "(struct_pack(k := " + keySql(argument) +
                 ", v := " + argument.sql + ")) FILTER (WHERE " + argument.sql + " IS NOT NULL)" +
                 aggregate.over + ").v";
  }
  return result;
}

Bound count(const Aggregate& aggregate) {
  const bool big = aggregate.call.syntax().name == "count_big";
  const SqlType type = big ? SqlType::of(SqlKind::bigInt) : SqlType::integer();
  const bool star = aggregate.call.syntax().star;
  if (!star && aggregate.argument.type.kind == SqlKind::untypedNull) refuseOperand(aggregate);
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

/// Terms that decide among rows which an order leaves equal, so that each run numbers them
/// the same way.
std::string decidingTerms(const Call& call) {
  const QueryScope& scope = call.binder().scope();
  std::string terms;
  if (scope.grouped) {
    for (const std::string& term : groupOrder(scope, false)) terms += ", " + term;
    return terms;
  }
  for (const Source& source : scope.sources) {
    if (source.table != nullptr) {
      terms += ", " + source.engine + ".rowid";
      continue;
    }
    for (const SourceColumn& column : source.columns)
      terms += ", " + orderTerm(computed(source.columnSql(column), column.type), false);
  }
  return terms;
}

/// Texts joined in the order of WITHIN GROUP, without it in that of the rows.
Bound joinedTexts(const Call& call) {
  if (call.count() != 2) {
    raiseAt(call.position(), 174,
            "The string_agg function requires 2 argument(s), not " + std::to_string(call.count()) +
                ".");
  }
  if (call.syntax().distinct) refuse(call.position(), "string_agg of DISTINCT texts");
  const Bound value =
      castTo(call.binder().context(), call.binder().bindAggregateArgument(call.expression(0)),
             SqlType::nvarchar(SqlType::kMaxLength), call.position());
  const std::string separator = quoteText(call.constantText(1));
  std::string order;
  for (const OrderItem& item : call.syntax().withinGroup) {
    order += ", " + orderTerm(call.binder().bindAggregateArgument(*item.key), item.descending);
  }
  QueryScope& scope = call.binder().scope();
  const bool grouped = std::exchange(scope.grouped, false);
  order += decidingTerms(call);
  scope.grouped = grouped;
  if (!order.empty()) order.replace(0, 1, " ORDER BY");
  return computed("string_agg(" + value.sql + ", " + separator + order + ")", value.type,
                  value.canFail);
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

/// An ORDER BY of OVER names columns; a constant orders nothing.
Bound windowKey(const Call& call, const OrderItem& item) {
  Bound key = call.binder().bind(*item.key);
  if (key.constant) {
    raiseAt(item.key->position, key.type.isInteger() ? 5308 : 5309,
            "Windowed functions do not support constants as ORDER BY clause expressions.");
  }
  return key;
}

std::string windowSql(const Call& call, bool numbersRows) {
  std::string sql;
  for (const ExpressionPtr& key : call.syntax().over->partitionBy) {
    sql.append(sql.empty() ? "PARTITION BY " : ", ").append(keySql(call.binder().bind(*key)));
  }
  bool first = true;
  for (const OrderItem& item : call.syntax().over->orderBy) {
    sql.append(first ? (sql.empty() ? "ORDER BY " : " ORDER BY ") : ", ");
    sql += orderTerm(windowKey(call, item), item.descending);
    first = false;
  }
  if (numbersRows) sql += decidingTerms(call);
  return " OVER (" + sql + ")";
}

void checkWindow(const Call& call) {
  const QueryScope& scope = call.binder().scope();
  if (scope.insideAggregate) {
    raiseAt(call.position(), 4109,
            "Windowed functions cannot be used in the context of another windowed function or "
            "aggregate.");
  }
  if (!scope.windowsAllowed) {
    raiseAt(call.position(), 4108,
            "Windowed functions can only appear in the SELECT or ORDER BY clauses.");
  }
  if (call.syntax().distinct) {
    raiseAt(call.position(), 10759, "Use of DISTINCT is not allowed with the OVER clause.");
  }
}

void checkArguments(const Call& call, std::size_t fewest, std::size_t most) {
  if (call.count() >= fewest && call.count() <= most) return;
  raiseAt(call.position(), 174,
          "The " + call.syntax().name + " function requires " + std::to_string(fewest) +
              " argument(s), not " + std::to_string(call.count()) + ".");
}

Bound ranking(const Call& call, bool numbersRows) {
  checkArguments(call, 0, 0);
  const SqlType type = SqlType::of(SqlKind::bigInt);
  return computed(castSql(call.syntax().name + "()" + windowSql(call, numbersRows), type), type);
}

/// The rows in so many groups of the same size, the first ones one row larger.
Bound tile(const Call& call) {
  checkArguments(call, 1, 1);
  const int groups = call.constantInteger(0);
  if (groups < 1) {
    raiseAt(call.position(), 9819, "The NTILE function requires a positive number of groups.");
  }
  const SqlType type = SqlType::of(SqlKind::bigInt);
  return computed(castSql("ntile(" + std::to_string(groups) + ")" + windowSql(call, true), type),
                  type);
}

/// The value of the row so many rows before or behind.
Bound neighbour(const Call& call) {
  checkArguments(call, 1, 3);
  const Bound value = call.argument(0);
  const int distance = call.count() > 1 ? call.constantInteger(1) : 1;
  if (distance < 0) {
    raiseAt(call.position(), 8730,
            "Offset parameter for Lag and Lead functions cannot be a "
            "negative value.");
  }
  if (value.type.kind == SqlKind::untypedNull) {
    refuse(call.position(), call.syntax().name + " of NULL");
  }
  std::string sql = call.syntax().name + "(" + exactSql(value) + ", " + std::to_string(distance);
  bool canFail = value.canFail;
  if (call.count() > 2) {
    const Bound other =
        castTo(call.binder().context(), call.argument(2), value.type, call.expression(2).position);
    sql += ", " + exactSql(other);
    canFail = canFail || other.canFail;
  }
  return computed(sql + ")" + windowSql(call, true), value.type, canFail);
}

struct WindowRule {
  std::string_view name;
  Bound (*bind)(const Call& call);
};

/// Functions that stand with OVER and ORDER BY only.
constexpr auto kOrderedWindows = std::to_array<WindowRule>({
    {"row_number", [](const Call& call) { return ranking(call, true); }},
    {"rank", [](const Call& call) { return ranking(call, false); }},
    {"dense_rank", [](const Call& call) { return ranking(call, false); }},
    {"ntile", tile},
    {"lag", neighbour},
    {"lead", neighbour},
});

}  // namespace

Bound bindAggregate(const Call& call) {
  checkAllowed(call);
  if (call.syntax().name == "string_agg") return joinedTexts(call);
  checkCount(call);
  if (call.syntax().name == "grouping") return grouping(call);
  Bound argument;
  if (!call.syntax().star) argument = call.binder().bindAggregateArgument(call.expression(0));
  return bindKnown({call, std::move(argument), call.syntax().distinct ? "DISTINCT " : "", ""});
}

Bound bindWindowFunction(const Call& call) {
  const std::string& name = call.syntax().name;
  checkWindow(call);
  const auto ordered = std::ranges::find(kOrderedWindows, name, &WindowRule::name);
  if (ordered != kOrderedWindows.end()) {
    if (call.syntax().over->orderBy.empty()) {
      raiseAt(call.position(), 4112,
              "The function '" + name + "' must have an OVER clause with ORDER BY.");
    }
    return ordered->bind(call);
  }
  if (!isAggregate(name) || name == "grouping" || name == "string_agg") {
    refuse(call.position(), "the function " + name + " with OVER");
  }
  checkCount(call);
  Bound argument;
  if (!call.syntax().star) argument = call.argument(0);
  return bindKnown({call, std::move(argument), "", windowSql(call, false)});
}

}  // namespace velmora::tsql
