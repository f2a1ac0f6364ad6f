#include <algorithm>
#include <array>

#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/conversion_number.h"
#include "platform/tsql/binding/functions/functions.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

/// The argument as a number; a text counts as a float.
Bound number(const Call& call, std::size_t index) {
  Bound value = call.argument(index);
  if (value.type.isNumber()) return value;
  return castTo(call.binder().context(), value, SqlType::floating(),
                call.expression(index).position);
}

Bound ofSameType(const Call& call, const std::string& name) {
  const Bound value = number(call, 0);
  return computed(castSql(name + "(" + value.sql + ")", value.type), value.type, value.canFail);
}

Bound absolute(const Call& call) {
  return ofSameType(call, "abs");
}
/// A decimal's sign has room for the 1 that the decimal itself may lack.
Bound sign(const Call& call) {
  const Bound value = number(call, 0);
  const SqlType type =
      value.type.kind == SqlKind::decimal
          ? SqlType::decimal(std::min(38, value.type.precision + 1), value.type.scale)
          : value.type;
  return computed(castSql("sign(" + value.sql + ")", type), type, value.canFail);
}

/// floor and ceiling: a decimal loses its fraction digits, integers stay.
Bound wholeNumber(const Call& call, const std::string& name) {
  Bound value = number(call, 0);
  if (value.type.isInteger()) return value;
  const SqlType type =
      value.type.kind == SqlKind::decimal ? SqlType::decimal(value.type.precision, 0) : value.type;
  return computed(castSql(name + "(" + exactSql(value) + ")", type), type, value.canFail);
}

Bound floorOf(const Call& call) {
  return wholeNumber(call, "floor");
}
Bound ceilingOf(const Call& call) {
  return wholeNumber(call, "ceil");
}

/// 10 to the power, as the engine reads it.
std::string powerOfTen(int exponent) {
  return "1" + std::string(static_cast<std::size_t>(exponent), '0');
}

/// The value without the digits behind `places` decimals.
std::string truncatedSql(Context& context, const Bound& value, int places) {
  if (value.type.isApproximate()) {
    const std::string factor = castSql("power(10, " + std::to_string(places) + ")", value.type);
    return "(trunc(" + value.sql + " * " + factor + ") / " + factor + ")";
  }
  const int most = value.type.isInteger() ? 18 : collections::Decimal::kMaxDigits - 1;
  if (places < -most) return "(" + value.sql + " * 0)";
  const std::string unit = powerOfTen(std::max(-places, 0));
  if (value.type.isInteger()) return "(" + value.sql + " // " + unit + " * " + unit + ")";
  // A quotient is cut, not rounded.
  const auto wide = [](std::string_view sql, int scale) {
    return castSql(sql, SqlType::decimal(collections::Decimal::kMaxDigits, scale));
  };
  const std::string name = context.require(
      {DecimalFunction::Operation::divide, value.type.scale, 0, std::max(places, 0)});
  const std::string cut =
      name + "(" + wide(value.sql, value.type.scale) + ", " + wide("'" + unit + "'", 0) + ")";
  if (places >= 0) return cut;
  const std::string times = context.require({DecimalFunction::Operation::multiply, 0, 0, 0});
  return times + "(" + cut + ", " + wide("'" + unit + "'", 0) + ")";
}

/// Half away from zero; the type stays. A third argument other than 0 cuts instead.
Bound round(const Call& call) {
  Bound value = number(call, 0);
  const int places = call.constantInteger(1);
  const bool cut = call.count() == 3 && call.constantInteger(2) != 0;
  if (places >= value.type.scale && value.type.isExact()) return value;
  std::string sql;
  if (cut) {
    sql = truncatedSql(call.binder().context(), value, places);
  } else if (value.type.isDecimal() && places >= 0) {
    sql = roundedSql(call.binder().context(), value, places);
  } else {
    sql = "round(" + exactSql(value) + ", " + std::to_string(places) + ")";
  }
  return computed(castSql(sql, value.type), value.type, value.canFail || places <= 0);
}

/// A function of floats that is not defined for all of them.
Bound ofFloat(const Call& call, const std::string& name) {
  return computed(name + "(" + call.floating(0).sql + ")", SqlType::floating(), true);
}
Bound squareRoot(const Call& call) {
  return ofFloat(call, "velmora_square_root");
}
Bound square(const Call& call) {
  return ofFloat(call, "velmora_square");
}
Bound exponential(const Call& call) {
  return ofFloat(call, "velmora_exponential");
}
Bound logarithm(const Call& call) {
  return ofFloat(call, "velmora_logarithm");
}
Bound decimalLogarithm(const Call& call) {
  return ofFloat(call, "velmora_decimal_logarithm");
}
Bound pi(const Call&) {
  return constantOf(3.14159265358979323846, SqlType::floating());
}

Bound power(const Call& call) {
  const Bound base = number(call, 0);
  const Bound exponent = call.floating(1);
  const Bound asFloat =
      convertTo(call.binder().context(), base, SqlType::floating(), call.position());
  const Bound result = computed("velmora_power(" + asFloat.sql + ", " + exponent.sql + ")",
                                SqlType::floating(), true);
  return base.type.isApproximate()
             ? result
             : convertTo(call.binder().context(), result, base.type, call.position());
}

constexpr auto kRules = std::to_array<FunctionRule>({
    {"abs", 1, 1, absolute},
    {"sign", 1, 1, sign},
    {"floor", 1, 1, floorOf},
    {"ceiling", 1, 1, ceilingOf},
    {"round", 2, 3, round},
    {"sqrt", 1, 1, squareRoot},
    {"square", 1, 1, square},
    {"exp", 1, 1, exponential},
    {"log", 1, 1, logarithm},
    {"log10", 1, 1, decimalLogarithm},
    {"pi", 0, 0, pi},
    {"power", 2, 2, power},
});

}  // namespace

std::span<const FunctionRule> numberFunctions() {
  return kRules;
}

}  // namespace velmora::tsql
