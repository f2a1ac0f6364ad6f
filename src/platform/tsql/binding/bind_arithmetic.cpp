#include <algorithm>

#include "platform/tsql/binding/bind_expression.h"
#include "platform/tsql/binding/conversions/conversion.h"
#include "platform/tsql/binding/conversions/conversion_number.h"
#include "platform/tsql/binding/conversions/text_rules.h"
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

/// Whether a divisor is neither zero nor -1, which takes the smallest integer beyond its type.
bool isSafeDivisor(const Bound& value) {
  if (!value.constant || value.isNull()) return false;
  const auto number = value.constant->toDecimal();
  return !number.isZero() && number != Decimal(-1);
}

/// What SQL Server calls an operator in its errors.
std::string_view word(ArithmeticOperator op) {
  switch (op) {
    case ArithmeticOperator::Add:
      return "add";
    case ArithmeticOperator::Subtract:
      return "subtract";
    case ArithmeticOperator::Multiply:
      return "multiply";
    case ArithmeticOperator::Divide:
      return "divide";
    case ArithmeticOperator::Modulo:
      return "modulo";
    default:
      return symbol(op);
  }
}

[[noreturn]] void refuseTypes(ArithmeticOperator op, const SqlType& left, const SqlType& right,
                              Position position) {
  raiseAt(position, 402,
          "The data types " + declaration(left) + " and " + declaration(right) +
              " are incompatible in the " + std::string(word(op)) + " operator.");
}

bool eitherCanFail(const Bound& a, const Bound& b) {
  return a.canFail || b.canFail;
}

/// Integers: division cuts towards zero, a zero divisor is error 8134, a result beyond the
/// operands' type 8115.
Bound integerOperation(Context& context, ArithmeticOperator op, const Bound& left,
                       const Bound& right, Position position) {
  const SqlType type = commonType(left.type, right.type);
  if (type.kind == SqlKind::bit && !isBitwise(op)) refuseTypes(op, left.type, right.type, position);
  const Bound a = convertTo(context, left, type, position);
  const Bound b = convertTo(context, right, type, position);
  if (!isDivision(op) || isSafeDivisor(b)) {
    return computed(infix(op, a.sql, b.sql), type, eitherCanFail(a, b));
  }
  const bool quotient = op == ArithmeticOperator::Divide;
  const std::string sql =
      quotient ? engine::quotient(a.sql, b.sql) : engine::remainder(a.sql, b.sql);
  return computed(castSql(sql, type), type, true);
}

Bound floatOperation(Context& context, ArithmeticOperator op, const Bound& left, const Bound& right,
                     Position position) {
  const SqlType type = commonType(left.type, right.type);
  if (op == ArithmeticOperator::Modulo) refuseTypes(op, left.type, right.type, position);
  const Bound a = convertTo(context, left, type, position);
  const Bound b = convertTo(context, right, type, position);
  const bool real = type.kind == SqlKind::real;
  const std::string sql =
      op == ArithmeticOperator::Divide ? engine::ratio(a.sql, b.sql) : infix(op, a.sql, b.sql);
  return computed(engine::finite(real ? castSql(sql, type) : sql, real), type, true);
}

/// An integer as written beside a decimal counts as a decimal just wide enough.
Bound asDecimalOperand(Context& context, const Bound& value, Position position) {
  if (value.type.isDecimal()) return value;
  if (!value.literal) {
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

/// Whether the engine's own arithmetic gives the answer: where no digit of the fraction is cut
/// and it has room for both operands at the same scale.
bool isNative(ArithmeticOperator op, const SqlType& a, const SqlType& b, const SqlType& type) {
  if (op == ArithmeticOperator::Multiply) return type.scale == a.scale + b.scale;
  const int scale = std::max(a.scale, b.scale);
  return type.scale == scale &&
         std::max(a.precision - a.scale, b.precision - b.scale) + scale <= Decimal::kMaxDigits;
}

DecimalFunction::Operation exactOperation(ArithmeticOperator op) {
  using Operation = DecimalFunction::Operation;
  switch (op) {
    case ArithmeticOperator::Divide:
      return Operation::divide;
    case ArithmeticOperator::Modulo:
      return Operation::remainder;
    case ArithmeticOperator::Add:
      return Operation::add;
    case ArithmeticOperator::Subtract:
      return Operation::subtract;
    default:
      return Operation::multiply;
  }
}

Bound decimalOperation(ExpressionBinder& binder, ArithmeticOperator op, const Bound& left,
                       const Bound& right, Position position) {
  Context& context = binder.context();
  const Bound a = asDecimalOperand(context, left, position);
  const Bound b = asDecimalOperand(context, right, position);
  const bool money = staysMoney(left.type, right.type);
  const SqlType answer = money ? SqlType::of(commonType(left.type, right.type).kind)
                               : decimalResult(op, a.type, b.type);
  const bool native = !isDivision(op) || (op == ArithmeticOperator::Modulo && isSafeDivisor(b));
  Bound result;
  if (native && isNative(op, a.type, b.type, answer)) {
    result = computed(infix(op, a.sql, b.sql), answer, eitherCanFail(a, b));
    result.exact = false;
  } else {
    result = decimalFunction(binder, exactOperation(op), a, b, answer);
  }
  return money ? inMoneyRange(context, result, answer) : result;
}

Bound concatenation(const Bound& left, const Bound& right) {
  const SqlType& known = left.type.isText() ? left.type : right.type;
  const SqlType& a = left.type.isText() ? left.type : known;
  const SqlType& b = right.type.isText() ? right.type : known;
  if (left.isNull() || right.isNull()) return constantOf(collections::Null{}, known);
  const SqlType type = concatenationType(a, b);
  const bool cut = type.length != SqlType::kMaxLength && a.length + b.length > type.length;
  const std::string sql = "(" + left.sql + " || " + right.sql + ")";
  return computed(cut ? startSql(sql, type) : sql, type, eitherCanFail(left, right));
}

/// Datetimes and days, each counted from 1900-01-01.
Bound dateOperation(Context& context, ArithmeticOperator op, const Bound& left, const Bound& right,
                    Position position) {
  const SqlType type = commonType(left.type, right.type);
  if (op != ArithmeticOperator::Add && op != ArithmeticOperator::Subtract) {
    raiseAt(position, 8117,
            "Operand data type " + declaration(type) + " is invalid for " + std::string(word(op)) +
                " operator.");
  }
  const Bound a = convertTo(context, left, type, position);
  const Bound b = convertTo(context, right, type, position);
  if (type.kind == SqlKind::date || type.kind == SqlKind::dateTime2) {
    raiseAt(position, 8117,
            "Operand data type " + declaration(type) + " is invalid for " + std::string(word(op)) +
                " operator.");
  }
  const std::string name =
      op == ArithmeticOperator::Add ? "velmora_sum_of_dates(" : "velmora_difference_of_dates(";
  const Bound result = computed(name + a.sql + ", " + b.sql + ")", SqlType::dateTime(), true);
  return convertTo(context, result, type, position);
}

[[noreturn]] void refuseOperator(ArithmeticOperator op, const SqlType& type, Position position) {
  raiseAt(position, 8117,
          "Operand data type " + declaration(type) + " is invalid for operator '" +
              std::string(op == ArithmeticOperator::Divide ? "/" : symbol(op)) + "'.");
}

/// The negative of a number as written stays one.
Bound negatedLiteral(const Bound& value) {
  if (value.type.isInteger()) {
    Bound result = constantOf(-value.constant->toInt64(), value.type);
    result.literal = true;
    return result;
  }
  Bound result = constantOf(-value.constant->toDecimal(), value.type);
  result.sql = "(" + result.constant->toDecimal().toString() + ")";
  result.exact = false;
  result.literal = true;
  return result;
}

Bound negated(Context& context, const Bound& value, Position position) {
  if (value.literal) return negatedLiteral(value);
  const bool unsignedType = value.type.kind == SqlKind::tinyInt;
  const SqlType type = unsignedType ? SqlType::of(SqlKind::smallInt) : value.type;
  const Bound number = convertTo(context, value, type, position);
  Bound result = computed("(-" + number.sql + ")", type, number.canFail || type.isInteger());
  result.exact = number.exact;
  return result;
}

/// The other value of a bit; all bits of an integer turned.
Bound inverted(const Bound& value) {
  const bool bit = value.type.kind == SqlKind::bit;
  const std::string sql = bit ? "(1 - " + value.sql + ")" : "(~" + value.sql + ")";
  return computed(castSql(sql, value.type), value.type, value.canFail);
}

/// The type of `left op right` where one of them is NULL.
SqlType resultType(ArithmeticOperator op, const SqlType& left, const SqlType& right) {
  const SqlType common = commonType(left, right);
  if (common.kind != SqlKind::decimal) return common;
  return decimalResult(op, asDecimal(left), asDecimal(right));
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
  if (a.isDate() || b.isDate()) {
    return dateOperation(binder.context(), op, left, right, position);
  }
  if (a.isText()) left = convertTo(binder.context(), left, b, position);
  if (b.isText()) right = convertTo(binder.context(), right, a, position);
  if (left.type.kind == SqlKind::untypedNull)
    left = convertTo(binder.context(), left, right.type, position);
  if (right.type.kind == SqlKind::untypedNull)
    right = convertTo(binder.context(), right, left.type, position);
  if (left.type.kind == SqlKind::untypedNull) return left;
  if (left.isNull() || right.isNull()) {
    return constantOf(collections::Null{}, resultType(op, left.type, right.type));
  }
  if (left.type.isInteger() && right.type.isInteger()) {
    return integerOperation(binder.context(), op, left, right, position);
  }
  if (isBitwise(op)) refuseTypes(op, left.type, right.type, position);
  if (left.type.isApproximate() || right.type.isApproximate()) {
    return floatOperation(binder.context(), op, left, right, position);
  }
  return decimalOperation(binder, op, left, right, position);
}

Bound bindArithmetic(ExpressionBinder& binder, const ArithmeticExpression& arithmetic) {
  // Each term is one level more to the engine, which takes the cube of them in time.
  constexpr std::size_t mostTerms = 500;
  if (arithmetic.rest.size() >= mostTerms) refuseDepth(arithmetic.rest[mostTerms - 1].position);
  Bound value = binder.bind(*arithmetic.first);
  for (const auto& term : arithmetic.rest) {
    value =
        bindOperator(binder, term.op, std::move(value), binder.bind(*term.operand), term.position);
  }
  return value;
}

Bound bindUnary(ExpressionBinder& binder, const Expression& expression,
                const UnaryExpression& unary) {
  const Bound value = binder.bind(*unary.operand);
  const auto refuse = [&](std::string_view name) {
    raiseAt(expression.position, 8117,
            "Operand data type " + declaration(value.type) + " is invalid for " +
                std::string(name) + " operator.");
  };
  const bool untyped = value.type.kind == SqlKind::untypedNull;
  switch (unary.op) {
    case UnaryOperator::Plus:
      if (value.type.isDate()) refuse("plus");
      return value;
    case UnaryOperator::Minus:
      if (!untyped && (!value.type.isNumber() || value.type.kind == SqlKind::bit)) refuse("minus");
      return value.isNull() ? value : negated(binder.context(), value, expression.position);
    default:
      if (!untyped && !value.type.isInteger()) refuse("'~'");
      return value.isNull() ? value : inverted(value);
  }
}

}  // namespace velmora::tsql
