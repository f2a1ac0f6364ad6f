#include <algorithm>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

using collections::Decimal;

std::string_view symbol(ArithmeticOperator op) {
  switch (op) {
    case ArithmeticOperator::Add:
      return "+";
    case ArithmeticOperator::Subtract:
      return "-";
    case ArithmeticOperator::Multiply:
      return "*";
    case ArithmeticOperator::Divide:
      return "//";
    case ArithmeticOperator::Modulo:
      return "%";
    case ArithmeticOperator::BitAnd:
      return "&";
    case ArithmeticOperator::BitOr:
      return "|";
    case ArithmeticOperator::BitXor:
      return "^";
  }
  return "";
}

bool isBitwise(ArithmeticOperator op) {
  return op >= ArithmeticOperator::BitAnd;
}
bool isDivision(ArithmeticOperator op) {
  return op == ArithmeticOperator::Divide || op == ArithmeticOperator::Modulo;
}

std::string infix(ArithmeticOperator op, std::string_view left, std::string_view right) {
  if (op == ArithmeticOperator::BitXor) {
    return "xor(" + std::string(left) + ", " + std::string(right) + ")";
  }
  std::string sql = "(";
  return sql.append(left).append(" ").append(symbol(op)).append(" ").append(right).append(")");
}

bool surelyNotZero(const Bound& value) {
  return value.constant && !value.constant->isNull() && value.constant->toDecimal().sign() != 0;
}

bool eitherCanFail(const Bound& a, const Bound& b) {
  return a.canFail || b.canFail;
}

/// Integers: division cuts towards zero, a zero divisor is error 8134.
Bound integerOperation(Context& context, ArithmeticOperator op, const Bound& left,
                       const Bound& right, Position position) {
  SqlType type = commonType(left.type, right.type);
  if (type.kind == SqlKind::bit && !isBitwise(op)) type = SqlType::integer();
  const Bound a = convertTo(context, left, type, position);
  const Bound b = convertTo(context, right, type, position);
  if (!isDivision(op) || surelyNotZero(b)) {
    return computed(infix(op, a.sql, b.sql), type, eitherCanFail(a, b));
  }
  const bool quotient = op == ArithmeticOperator::Divide;
  const std::string sql =
      quotient ? engine::quotient(a.sql, b.sql) : engine::remainder(a.sql, b.sql);
  return computed(castSql(sql, type), type, true);
}

Bound floatOperation(Context& context, ArithmeticOperator op, const Bound& left, const Bound& right,
                     Position position) {
  const SqlType type = left.type.isApproximate() && right.type.isApproximate()
                           ? commonType(left.type, right.type)
                           : SqlType::floating();
  const Bound a = convertTo(context, left, type, position);
  const Bound b = convertTo(context, right, type, position);
  const bool divides = op == ArithmeticOperator::Divide;
  if (divides && b.constant && !b.isNull() && b.constant->toDouble() != 0) {
    return computed("(" + a.sql + " / " + b.sql + ")", type, eitherCanFail(a, b));
  }
  if (divides) {
    return computed(castSql(engine::ratio(a.sql, b.sql), type), type, true);
  }
  if (op == ArithmeticOperator::Modulo) refuse(position, "% of float values");
  return computed(infix(op, a.sql, b.sql), type, eitherCanFail(a, b));
}

/// An integer constant beside a decimal counts as a decimal just wide enough.
Bound asDecimalOperand(Context& context, const Bound& value, Position position) {
  if (value.type.isDecimal()) return value;
  if (!value.constant || value.isNull()) {
    return convertTo(context, value, asDecimal(value.type), position);
  }
  const std::string digits = value.constant->toDecimal().abs().toString();
  return convertTo(context, value, SqlType::decimal(static_cast<int>(digits.size()), 0), position);
}

std::string wideSql(const Bound& value) {
  return castSql(value.sql, SqlType::decimal(Decimal::kMaxDigits, value.type.scale));
}

Bound decimalFunction(ExpressionBinder& binder, DecimalFunction::Operation operation,
                      const Bound& a, const Bound& b, const SqlType& type) {
  const std::string name =
      binder.context().require({operation, a.type.scale, b.type.scale, type.scale});
  Bound result = computed(name + "(" + wideSql(a) + ", " + wideSql(b) + ")", type, true);
  result.exact = type.precision == Decimal::kMaxDigits;
  return result;
}

/// Whether the engine's own product is the answer: where all digits of the fraction stay.
bool nativeProduct(const SqlType& a, const SqlType& b, const SqlType& type) {
  return type.scale == a.scale + b.scale;
}

Bound decimalOperation(ExpressionBinder& binder, ArithmeticOperator op, const Bound& left,
                       const Bound& right, Position position) {
  const Bound a = asDecimalOperand(binder.context(), left, position);
  const Bound b = asDecimalOperand(binder.context(), right, position);
  const SqlType answer = staysMoney(left.type, right.type) ? SqlType::of(SqlKind::money)
                                                           : decimalResult(op, a.type, b.type);
  if (op == ArithmeticOperator::Divide) {
    return decimalFunction(binder, DecimalFunction::Operation::divide, a, b, answer);
  }
  if (op == ArithmeticOperator::Multiply && !nativeProduct(a.type, b.type, answer)) {
    return decimalFunction(binder, DecimalFunction::Operation::multiply, a, b, answer);
  }
  std::string sql = infix(op, a.sql, b.sql);
  bool canFail = eitherCanFail(a, b);
  if (op == ArithmeticOperator::Modulo && !surelyNotZero(b)) {
    sql = engine::remainder(a.sql, b.sql);
    canFail = true;
  }
  Bound result = computed(std::move(sql), answer, canFail);
  result.exact = false;
  return result;
}

Bound concatenation(const Bound& left, const Bound& right) {
  const SqlType& known = left.type.isText() ? left.type : right.type;
  const SqlType& a = left.type.isText() ? left.type : known;
  const SqlType& b = right.type.isText() ? right.type : known;
  if (left.isNull() || right.isNull()) return constantOf(collections::Null{}, known);
  return computed("(" + left.sql + " || " + right.sql + ")", concatenationType(a, b),
                  eitherCanFail(left, right));
}

/// A date moved by days.
Bound dateOperation(ArithmeticOperator op, const Bound& left, const Bound& right,
                    Position position) {
  const bool dateFirst = left.type.isDate();
  const Bound& date = dateFirst ? left : right;
  const Bound& days = dateFirst ? right : left;
  const bool backwards = op == ArithmeticOperator::Subtract;
  if (!days.type.isExact() || days.type.isText() || (backwards && !dateFirst) ||
      (!backwards && op != ArithmeticOperator::Add)) {
    refuse(position, "this operation on dates");
  }
  const std::string distance =
      "to_microseconds(CAST(" + castSql(days.sql, "DOUBLE") + " * 86400000000 AS BIGINT))";
  return computed(castSql(infix(op, date.sql, distance), date.type), date.type,
                  eitherCanFail(left, right));
}

[[noreturn]] void refuseOperator(ArithmeticOperator op, const SqlType& type, Position position) {
  raiseAt(position, 8117,
          "Operand data type " + declaration(type) + " is invalid for operator '" +
              std::string(op == ArithmeticOperator::Divide ? "/" : symbol(op)) + "'.");
}

Bound negated(const Bound& value) {
  if (value.constant && value.type.isExact() && !value.isNull()) {
    Bound result = constantOf(-value.constant->toDecimal(), value.type);
    if (value.type.isInteger()) {
      return constantOf((-value.constant->toDecimal()).toInt64(), value.type);
    }
    result.sql = "(" + result.constant->toDecimal().toString() + ")";
    result.exact = false;
    return result;
  }
  Bound result = computed("(-" + value.sql + ")", value.type, value.canFail);
  result.exact = value.exact;
  return result;
}

}  // namespace

Bound bindOperator(ExpressionBinder& binder, ArithmeticOperator op, Bound left, Bound right,
                   Position position) {
  const bool texts = (left.type.isText() || left.isNull()) &&
                     (right.type.isText() || right.isNull()) &&
                     (left.type.isText() || right.type.isText());
  if (texts) {
    if (op != ArithmeticOperator::Add) refuseOperator(op, left.type, position);
    return concatenation(left, right);
  }
  const SqlType a = left.type;
  const SqlType b = right.type;
  if (a.isDate() || b.isDate()) return dateOperation(op, left, right, position);
  if (a.isText()) left = convertTo(binder.context(), left, b, position);
  if (b.isText()) right = convertTo(binder.context(), right, a, position);
  if (left.type.kind == SqlKind::untypedNull)
    left = convertTo(binder.context(), left, right.type, position);
  if (right.type.kind == SqlKind::untypedNull)
    right = convertTo(binder.context(), right, left.type, position);
  if (left.type.kind == SqlKind::untypedNull) return left;
  if (left.type.isInteger() && right.type.isInteger()) {
    return integerOperation(binder.context(), op, left, right, position);
  }
  if (isBitwise(op)) refuseOperator(op, commonType(left.type, right.type), position);
  if (left.type.isApproximate() || right.type.isApproximate()) {
    return floatOperation(binder.context(), op, left, right, position);
  }
  return decimalOperation(binder, op, left, right, position);
}

Bound bindArithmetic(ExpressionBinder& binder, const ArithmeticExpression& arithmetic) {
  Bound value = binder.bind(*arithmetic.first);
  for (const auto& term : arithmetic.rest) {
    value =
        bindOperator(binder, term.op, std::move(value), binder.bind(*term.operand), term.position);
  }
  return value;
}

Bound bindUnary(ExpressionBinder& binder, const Expression& expression,
                const UnaryExpression& unary) {
  Bound value = binder.bind(*unary.operand);
  if (value.type.isText() || value.type.isDate()) {
    raiseAt(expression.position, 8117,
            "Operand data type " + declaration(value.type) + " is invalid for a sign.");
  }
  if (unary.op == UnaryOperator::Plus || value.isNull()) return value;
  if (unary.op == UnaryOperator::Minus) return negated(value);
  if (!value.type.isInteger()) {
    raiseAt(expression.position, 8117,
            "Operand data type " + declaration(value.type) + " is invalid for operator '~'.");
  }
  return computed("(~" + value.sql + ")", value.type, value.canFail);
}

}  // namespace velmora::tsql
