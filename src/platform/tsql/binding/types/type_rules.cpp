#include "platform/tsql/binding/types/type_rules.h"

#include <algorithm>

namespace velmora::tsql {
namespace {

constexpr int kMaxPrecision = 38;
/// Digits of the fraction that a product or quotient keeps however wide it gets.
constexpr int kKeptScale = 6;

SqlType commonText(const SqlType& a, const SqlType& b) {
  SqlType type = a.kind >= b.kind ? a : b;
  if (type.kind == SqlKind::uniqueIdentifier) return type;
  const bool national = a.isNational() || b.isNational();
  const bool fixed = a.kind == b.kind && a.length == b.length &&
                     (a.kind == SqlKind::character || a.kind == SqlKind::nchar);
  if (!fixed) type.kind = national ? SqlKind::nvarchar : SqlKind::varchar;
  const bool unlimited = a.length == SqlType::kMaxLength || b.length == SqlType::kMaxLength;
  type.length = unlimited ? SqlType::kMaxLength : std::max(a.length, b.length);
  return type;
}

SqlType commonDecimal(const SqlType& a, const SqlType& b) {
  const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
  const int scale = std::min(std::max(a.scale, b.scale), kMaxPrecision - whole);
  return SqlType::decimal(whole + scale, scale);
}

/// Sums and differences give up fraction digits so that the whole part fits.
SqlType sumOfDecimals(const SqlType& a, const SqlType& b) {
  const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
  const int scale = std::max(a.scale, b.scale);
  const int precision = std::min(whole + scale + 1, kMaxPrecision);
  return SqlType::decimal(precision, std::min(scale, precision - whole));
}

/// Products and quotients beyond 38 digits keep at least six digits of the fraction.
SqlType capped(int precision, int scale) {
  if (precision <= kMaxPrecision) return SqlType::decimal(precision, scale);
  const int whole = precision - scale;
  const int cut = std::max(std::min(scale, kMaxPrecision - whole), std::min(scale, kKeptScale));
  return SqlType::decimal(kMaxPrecision, cut);
}

}  // namespace

SqlType commonType(const SqlType& a, const SqlType& b) {
  if (a.kind == SqlKind::untypedNull) return b;
  if (b.kind == SqlKind::untypedNull) return a;
  if (a.isText() && b.isText()) return commonText(a, b);
  const SqlType& higher = a.kind >= b.kind ? a : b;
  const SqlType& lower = a.kind >= b.kind ? b : a;
  if (higher.kind == SqlKind::decimal && lower.isExact()) {
    return commonDecimal(asDecimal(higher), asDecimal(lower));
  }
  return higher;
}

SqlType asDecimal(const SqlType& type) {
  return type.isMoney() ? type : SqlType::decimal(type.precision, type.scale);
}

bool staysMoney(const SqlType& a, const SqlType& b) {
  const auto moneyOrInteger = [](const SqlType& type) {
    return type.isMoney() || type.isInteger();
  };
  return (a.isMoney() || b.isMoney()) && moneyOrInteger(a) && moneyOrInteger(b);
}

SqlType decimalResult(ArithmeticOperator op, const SqlType& a, const SqlType& b) {
  const int wholeA = a.precision - a.scale;
  switch (op) {
    case ArithmeticOperator::Multiply:
      return capped(a.precision + b.precision + 1, a.scale + b.scale);
    case ArithmeticOperator::Divide: {
      const int scale = std::max(kKeptScale, a.scale + b.precision + 1);
      return capped(wholeA + b.scale + scale, scale);
    }
    case ArithmeticOperator::Modulo: {
      const int scale = std::max(a.scale, b.scale);
      return SqlType::decimal(
          std::min(std::min(wholeA, b.precision - b.scale) + scale, kMaxPrecision), scale);
    }
    default:
      return sumOfDecimals(a, b);
  }
}

SqlType sumType(const SqlType& type) {
  if (type.kind == SqlKind::decimal) return SqlType::decimal(kMaxPrecision, type.scale);
  if (type.isInteger()) return type.kind == SqlKind::bigInt ? type : SqlType::integer();
  if (type.isApproximate()) return SqlType::floating();
  if (type.isMoney()) return SqlType::of(SqlKind::money);
  return type;
}

SqlType averageType(const SqlType& type) {
  if (type.kind != SqlKind::decimal) return sumType(type);
  return SqlType::decimal(kMaxPrecision, std::max(type.scale, kKeptScale));
}

SqlType concatenationType(const SqlType& a, const SqlType& b) {
  SqlType type = commonText(a, b);
  if (type.kind == SqlKind::uniqueIdentifier) type.kind = SqlKind::varchar;
  if (type.kind == SqlKind::nchar) type.kind = SqlKind::nvarchar;
  if (type.kind == SqlKind::character) type.kind = SqlKind::varchar;
  const std::int64_t limit = type.isNational() ? 4000 : 8000;
  if (type.length != SqlType::kMaxLength) type.length = std::min(a.length + b.length, limit);
  return type;
}

}  // namespace velmora::tsql
