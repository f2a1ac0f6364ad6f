#include "platform/tsql/binding/conversions/conversion_number.h"

#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/type_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/values/text_number.h"
#include "platform/tsql/values/value_error.h"

namespace velmora::tsql {
namespace {

using collections::Decimal;
using collections::Variant;

/// The type's name without its size.
std::string typeName(const SqlType& type) {
  const std::string text = declaration(type);
  return text.substr(0, text.find('('));
}

/// A text read as a number of the type by the engine.
std::string readSql(Context& context, const Bound& value, const SqlType& type) {
  const std::string& text = value.sql;
  if (type.kind == SqlKind::bit) return "velmora_bit_number(" + text + ")";
  if (type.isInteger()) return "velmora_whole_number(" + text + ", '" + typeName(type) + "')";
  if (type.isApproximate()) return "velmora_float_number(" + text + ")";
  if (!type.isMoney()) {
    return "velmora_decimal_digits(" + text + ", " + std::to_string(type.precision) + ", " +
           std::to_string(type.scale) + ")";
  }
  const SqlType digits = SqlType::decimal(Decimal::kMaxDigits, type.scale);
  const Bound read = computed(castSql("velmora_money_digits(" + text + ")", digits), digits, true);
  return inMoneyRange(context, read, type).sql;
}

/// The number that a constant text says; raises as the engine does for a row.
Decimal readNumber(std::string_view text, const SqlType& type) {
  if (type.kind == SqlKind::bit) return {values::bitNumber(text)};
  if (type.isInteger()) return {values::wholeNumber(text, typeName(type))};
  if (type.isMoney()) return Decimal::parse(values::moneyDigits(text));
  return Decimal::parse(values::decimalDigits(text, type.precision, type.scale));
}

Bound constantNumber(const Decimal& number, const SqlType& type) {
  if (type.kind == SqlKind::bit) return constantOf(Variant(std::int32_t{!number.isZero()}), type);
  if (type.isInteger()) return constantOf(number.toInt64(), type);
  if (type.isApproximate()) return constantOf(number.toDouble(), type);
  return constantOf(number.rescaled(type.scale), type);
}

int wholeDigits(const Decimal& number) {
  const std::string digits = number.abs().truncated(0).toString();
  return digits == "0" ? 0
                       : static_cast<int>(digits.find('.') == std::string::npos ? digits.size()
                                                                                : digits.find('.'));
}

bool isInt32(collections::int128 value) {
  return value == static_cast<std::int32_t>(value);
}
bool isInt64(collections::int128 value) {
  return value == static_cast<std::int64_t>(value);
}

/// Whether a constant can be folded without leaving the type's range.
bool inRange(const Decimal& number, const SqlType& type) {
  switch (type.kind) {
    case SqlKind::tinyInt:
      return number >= Decimal(0) && number <= Decimal(255);
    case SqlKind::smallInt:
      return number >= Decimal(INT16_MIN) && number <= Decimal(INT16_MAX);
    case SqlKind::integer:
      return number >= Decimal(INT32_MIN) && number <= Decimal(INT32_MAX);
    case SqlKind::bigInt:
      return number >= Decimal(INT64_MIN) && number <= Decimal(INT64_MAX);
    case SqlKind::smallMoney:
      return wholeDigits(number) <= 6 && isInt32(number.rounded(4).rescaled(4).coefficient());
    case SqlKind::money:
      return wholeDigits(number) <= 15 && isInt64(number.rounded(4).rescaled(4).coefficient());
    case SqlKind::decimal:
      return wholeDigits(number.rounded(type.scale)) <= type.precision - type.scale;
    default:
      return true;
  }
}

std::string overflowText(const SqlType& type) {
  return "8115: Arithmetic overflow error converting expression to data type " + declaration(type) +
         ".";
}

Bound failing(const std::string& error, const SqlType& type) {
  return computed(raiseSql(error, type), type, true);
}

/// To an integer the fraction is cut, but that of money is rounded.
Bound foldNumber(const Decimal& number, const SqlType& from, const SqlType& type) {
  const bool whole = type.isInteger() && type.kind != SqlKind::bit;
  const Decimal fitting =
      !whole ? number : (from.isMoney() ? number.rounded(0) : number.truncated(0));
  if (!inRange(fitting, type)) return failing(overflowText(type), type);
  return constantNumber(fitting, type);
}

std::string toIntegerSql(const Bound& value, const SqlType& type) {
  if (type.kind == SqlKind::bit) return castSql("(" + value.sql + " <> 0)", type);
  if (value.type.isInteger()) return castSql(value.sql, type);
  return castSql((value.type.isMoney() ? "round(" : "trunc(") + value.sql + ")", type);
}

/// Whether the conversion cannot leave the range of `to`.
bool surelyInRange(const SqlType& from, const SqlType& to) {
  if (to.isApproximate() || to.kind == SqlKind::bit) return true;
  if (from.isApproximate()) return false;
  if (to.isMoney() && from.kind != to.kind) return to.precision > 10 && from.kind < SqlKind::bigInt;
  return to.precision - to.scale >= from.precision - from.scale &&
         (to.isDecimal() || to.kind >= from.kind);
}

/// The most characters that a number of the type takes.
int widestText(const SqlType& type) {
  if (type.isInteger()) return type.kind == SqlKind::bit ? 1 : type.precision + 1;
  if (type.isMoney()) return 31;
  if (type.isDecimal()) return type.precision + 3;
  return 24;
}

/// Whole numbers that do not fit into a char or varchar are a star there.
bool becomesStar(const SqlType& from, const SqlType& to) {
  return from.kind < SqlKind::bigInt && !to.isNational();
}

std::string plainText(const Bound& value, int style) {
  if (value.type.isApproximate()) {
    return "velmora_float_text(" + castSql(value.sql, "DOUBLE") + ", " + std::to_string(style) +
           ")";
  }
  const std::string digits = castSql(exactSql(value), "VARCHAR");
  if (value.type.isMoney()) {
    return "velmora_money_text(" + digits + ", " + std::to_string(style) + ")";
  }
  // The engine leaves out the zero before the point where no digit can stand there.
  const bool bare = value.type.isDecimal() && value.type.precision == value.type.scale;
  return bare ? "velmora_leading_zero(" + digits + ")" : digits;
}

}  // namespace

Bound textToNumber(Context& context, const Bound& value, const SqlType& type) {
  if (!value.constant) return computed(castSql(readSql(context, value, type), type), type, true);
  const std::string_view text = value.constant->text();
  try {
    if (type.isApproximate()) return constantOf(values::floatNumber(text), type);
    return foldNumber(readNumber(text, type), type, type);
  } catch (const values::ValueError& error) {
    return failing(error.what(), type);
  }
}

Bound inMoneyRange(Context& context, const Bound& value, const SqlType& type) {
  const auto operation = type.kind == SqlKind::smallMoney ? DecimalFunction::Operation::smallMoney
                                                          : DecimalFunction::Operation::money;
  const std::string name = context.require({operation, value.type.scale, 0, type.scale});
  const SqlType wide = SqlType::decimal(Decimal::kMaxDigits, value.type.scale);
  return computed(
      castSql(name + "(" + castSql(value.sql, wide) + ", CAST(1 AS DECIMAL(38,0)))", type), type,
      true);
}

/// The engine's own cast to fewer decimals takes microseconds a value; the product with
/// one, rounded, is the same.
std::string roundedSql(Context& context, const Bound& value, int scale) {
  const std::string name =
      context.require({DecimalFunction::Operation::multiply, value.type.scale, 0, scale});
  return name + "(" + castSql(value.sql, SqlType::decimal(Decimal::kMaxDigits, value.type.scale)) +
         ", CAST(1 AS DECIMAL(38,0)))";
}

Bound numberToNumber(Context& context, const Bound& value, const SqlType& type) {
  if (value.constant && value.type.isExact()) {
    return foldNumber(value.constant->toDecimal(), value.type, type);
  }
  if (type.isMoney() && !surelyInRange(value.type, type)) {
    const SqlType exact = value.type.isApproximate() ? SqlType::decimal(Decimal::kMaxDigits, 4)
                                                     : asDecimal(value.type);
    return inMoneyRange(context, computed(castSql(value.sql, exact), exact), type);
  }
  const bool rounds = value.type.isDecimal() && type.isDecimal() && type.scale < value.type.scale;
  const std::string source = rounds ? roundedSql(context, value, type.scale) : value.sql;
  std::string sql = type.isInteger() ? toIntegerSql(value, type) : castSql(source, type);
  return computed(std::move(sql), type, value.canFail || !surelyInRange(value.type, type));
}

Bound numberToText(const Bound& value, const SqlType& type, int style) {
  const auto widest = static_cast<std::int64_t>(widestText(value.type));
  const bool fits = type.length == SqlType::kMaxLength || type.length >= widest;
  const SqlType text = SqlType::varchar(fits ? widest : type.length);
  if (value.constant && value.type.isInteger() && fits) {
    return constantOf(value.constant->toText(), text);
  }
  if (fits) return computed(plainText(value, style), text, value.canFail);
  const std::string room = std::to_string(type.length);
  if (becomesStar(value.type, type)) {
    return computed("velmora_integer_text(" + value.sql + ", " + room + ")", text, value.canFail);
  }
  return computed(
      "velmora_room_for(" + plainText(value, style) + ", " + room + ", '" + typeName(type) + "')",
      text, true);
}

}  // namespace velmora::tsql
