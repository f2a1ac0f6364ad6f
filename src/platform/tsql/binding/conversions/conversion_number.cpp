#include "platform/tsql/binding/conversions/conversion_number.h"

#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

using collections::Decimal;
using collections::Variant;

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

bool isWholeNumber(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool isLogical(std::string_view text) {
  return sameName(text, "true") || sameName(text, "false");
}

/// The number a constant text stands for; nullopt when it is none of the type.
std::optional<Decimal> numberOf(std::string_view text, const SqlType& type) {
  text = trimmed(text);
  if (text.empty()) return type.kind == SqlKind::decimal ? std::nullopt : std::optional(Decimal(0));
  if (type.kind == SqlKind::bit && isLogical(text)) return Decimal(sameName(text, "true") ? 1 : 0);
  if (type.isInteger() && !isWholeNumber(text)) return std::nullopt;
  const bool exponent = text.find_first_of("eE") != std::string_view::npos;
  if (type.isDecimal() && exponent) return std::nullopt;
  return Decimal::tryParse(text);
}

/// The type's name without its size.
std::string typeName(const SqlType& type) {
  const std::string text = declaration(type);
  return text.substr(0, text.find('('));
}

std::string failureText(std::string_view text, const Bound& value, const SqlType& type) {
  if (!type.isInteger()) {
    return "8114: Error converting data type " + typeName(value.type) + " to " + typeName(type) +
           ": '" + std::string(text) + "'.";
  }
  return "245: Conversion failed when converting the " + typeName(value.type) + " value '" +
         std::string(text) + "' to data type " + typeName(type) + ".";
}

/// A number read by the engine, as wide as it may be, before it becomes the type.
std::string readSql(const Bound& value, const SqlType& type) {
  if (type.kind == SqlKind::bit) return engine::textToBit(value.sql);
  if (type.isInteger()) return engine::wholeNumber(value.sql, typeName(type));
  if (type.isDecimal()) return engine::decimalText(value.sql, typeName(type));
  return engine::textToFloat(value.sql, typeName(type));
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
    case SqlKind::decimal:
    case SqlKind::money:
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

Bound foldNumber(const Decimal& number, const SqlType& type) {
  const Decimal fitting =
      type.isInteger() && type.kind != SqlKind::bit ? number.truncated(0) : number;
  if (!inRange(fitting, type)) return failing(overflowText(type), type);
  return constantNumber(fitting, type);
}

std::string toIntegerSql(const Bound& value, const SqlType& type) {
  if (type.kind == SqlKind::bit) return castSql("(" + value.sql + " <> 0)", type);
  if (value.type.isInteger()) return castSql(value.sql, type);
  return castSql("trunc(" + value.sql + ")", type);
}

/// Whether the conversion cannot leave the range of `to`.
bool surelyInRange(const SqlType& from, const SqlType& to) {
  if (to.isApproximate() || to.kind == SqlKind::bit) return true;
  if (from.isApproximate()) return false;
  return to.precision - to.scale >= from.precision - from.scale &&
         (to.isDecimal() || to.kind >= from.kind);
}

}  // namespace

Bound textToNumber(const Bound& value, const SqlType& type) {
  if (value.constant) {
    const std::string_view text = value.constant->text();
    const auto number = numberOf(text, type);
    return number ? foldNumber(*number, type) : failing(failureText(text, value, type), type);
  }
  return computed(castSql(readSql(value, type), type), type, true);
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
    return foldNumber(value.constant->toDecimal(), type);
  }
  const bool rounds = value.type.isDecimal() && type.isDecimal() && type.scale < value.type.scale;
  const std::string source = rounds ? roundedSql(context, value, type.scale) : value.sql;
  std::string sql = type.isInteger() ? toIntegerSql(value, type) : castSql(source, type);
  return computed(std::move(sql), type, value.canFail || !surelyInRange(value.type, type));
}

Bound numberText(const Bound& value) {
  const SqlType type = SqlType::varchar(value.type.isDecimal() ? value.type.precision + 2 : 24);
  if (value.constant && value.type.isInteger()) return constantOf(value.constant->toText(), type);
  std::string sql = value.sql;
  if (value.type.kind == SqlKind::money) sql = castSql(sql, "DECIMAL(19,2)");
  if (value.type.kind == SqlKind::decimal) sql = exactSql(value);
  if (value.type.isApproximate()) return computed("printf('%g', " + sql + ")", type, value.canFail);
  return computed(castSql(sql, "VARCHAR"), type, value.canFail);
}

}  // namespace velmora::tsql
