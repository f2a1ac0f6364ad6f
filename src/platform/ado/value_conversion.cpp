#include "platform/ado/value_conversion.h"

#include <limits>
#include <optional>

#include "platform/ado/characters.h"
#include "platform/collections/powers_of_ten.h"
#include "velmora/ado/data_type.h"
#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

using collections::Date;
using collections::Decimal;
using collections::VarType;

/// The value for a message, a long text cut.
std::string shown(const Variant& value) {
  if (value.type() == VarType::object) return "an object";
  constexpr std::size_t longest = 60;
  std::string text = value.toText();
  if (text.size() <= longest) return "'" + text + "'";
  std::size_t end = longest;
  while (end > 0 && (text[end] & 0xC0) == 0x80) --end;
  return "'" + text.substr(0, end) + "...'";
}

[[noreturn]] void fail(const FieldDefinition& field, const std::string& what,
                       const std::string& expected) {
  throw com::Error(com::error::kAdoDataConversion, "ADODB.Field",
                   "Column '" + field.name + "' (" + std::string(dataTypeName(field.type)) +
                       "): " + what + "; expected " + expected);
}

Decimal toNumber(const Variant& value, const FieldDefinition& field) {
  switch (value.type()) {
    case VarType::boolean:
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
    case VarType::decimal:
      return value.toDecimal();
    case VarType::real:
      return Decimal::fromDouble(value.toDouble());
    case VarType::string:
      if (const auto number = Decimal::tryParse(value.text())) return *number;
      [[fallthrough]];
    default:
      fail(field, shown(value) + " is no number", "a number");
  }
}

struct Range {
  std::int64_t lowest, highest;
};

Range rangeOf(DataTypeEnum type) {
  switch (type) {
    case adUnsignedTinyInt:
      return {0, 255};
    case adSmallInt:
      return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
    case adInteger:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    default:
      return {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};
  }
}

Variant toInteger(const Variant& value, const FieldDefinition& field) {
  const Decimal number = toNumber(value, field).rounded(0);
  const auto [lowest, highest] = rangeOf(field.type);
  if (number < Decimal(lowest) || number > Decimal(highest))
    fail(field, shown(value) + " is out of range",
         std::to_string(lowest) + " to " + std::to_string(highest));
  const auto whole = static_cast<std::int64_t>(number.coefficient());
  if (field.type == adBigInt) return whole;
  if (field.type == adInteger) return static_cast<std::int32_t>(whole);
  return static_cast<std::int16_t>(whole);
}

/// Whether the number has more than `digits` digits before the point.
bool isLonger(const Decimal& number, int digits) {
  if (digits + number.scale() > Decimal::kMaxDigits) return false;
  const auto limit =
      static_cast<collections::int128>(collections::powerOfTen(digits + number.scale()));
  return number.coefficient() >= limit || number.coefficient() <= -limit;
}

constexpr int kCurrencyDecimals = 4;

bool keepsEveryDigit(const FieldDefinition& field) {
  return field.precision == 0 && field.numericScale == 0;
}

Decimal toCurrency(const Variant& value, const FieldDefinition& field) {
  static const Decimal largest =
      Decimal::fromCoefficient(std::numeric_limits<std::int64_t>::max(), kCurrencyDecimals);
  const Decimal number = toNumber(value, field).rescaled(kCurrencyDecimals);
  if (number.abs() > largest)
    fail(field, shown(value) + " is out of range", "at most " + largest.toString());
  return number;
}

Decimal toScaled(const Variant& value, const FieldDefinition& field) {
  Decimal number = toNumber(value, field);
  if (keepsEveryDigit(field)) return number;
  const int precision = field.precision == 0 ? Decimal::kMaxDigits : field.precision;
  const int wholeDigits = precision - field.numericScale;
  if (number.scale() > field.numericScale) number = number.rounded(field.numericScale);
  if (isLonger(number, wholeDigits))
    fail(field, shown(value) + " is too large",
         "at most " + std::to_string(wholeDigits) + " digits before the decimal point");
  return number.scale() == field.numericScale ? number : number.rescaled(field.numericScale);
}

Variant toReal(const Variant& value, const FieldDefinition& field) {
  const double number =
      value.type() == VarType::real ? value.toDouble() : toNumber(value, field).toDouble();
  return field.type == adSingle ? static_cast<double>(static_cast<float>(number)) : number;
}

bool toBoolean(const Variant& value, const FieldDefinition& field) {
  if (value.type() == VarType::boolean) return value.toBool();
  if (collections::equalsIgnoringCase(value.text(), "true")) return true;
  if (collections::equalsIgnoringCase(value.text(), "false")) return false;
  return !toNumber(value, field).isZero();
}

Variant toDate(const Variant& value, const FieldDefinition& field) {
  std::optional<Date> date;
  if (value.type() == VarType::date) date = value.toDate();
  if (value.isString()) date = Date::tryParse(value.text());
  if (!date) fail(field, shown(value) + " is no date", "a date, as text YYYY-MM-DD [HH:MM:SS]");
  if (field.type != adDBDate) return *date;
  const auto parts = date->parts();
  return Date::ymd(parts.year, parts.month, parts.day);
}

Variant toText(const Variant& value, const FieldDefinition& field) {
  if (value.type() == VarType::object) fail(field, "an object has no text", "a text");
  Variant text = value.isString() ? value : Variant(value.toText());
  const bool limited = field.definedSize > 0 && fixedSize(field.type) == 0;
  const auto length = static_cast<std::int64_t>(characterCount(text.text()));
  if (limited && length > field.definedSize)
    fail(field, shown(value) + " has " + std::to_string(length) + " characters",
         "at most " + std::to_string(field.definedSize));
  return text;
}

Variant convert(const Variant& value, const FieldDefinition& field) {
  switch (kindOf(field.type)) {
    case DataKind::integer:
      return toInteger(value, field);
    case DataKind::decimal:
      return field.type == adCurrency ? toCurrency(value, field) : toScaled(value, field);
    case DataKind::real:
      return toReal(value, field);
    case DataKind::boolean:
      return toBoolean(value, field);
    case DataKind::date:
      return toDate(value, field);
    case DataKind::text:
      return toText(value, field);
    case DataKind::variant:
      break;
  }
  return value;
}

}  // namespace

int FieldDefinition::decimals() const noexcept {
  if (type == adCurrency) return kCurrencyDecimals;
  const DataKind kind = kindOf(type);
  if (kind == DataKind::integer) return 0;
  const bool limited = kind == DataKind::decimal && !keepsEveryDigit(*this);
  return limited ? numericScale : Decimal::kMaxDigits;
}

Variant convertToField(const Variant& value, const FieldDefinition& field) {
  if (value.isNull() || value.isEmpty()) {
    if (!field.nullable) fail(field, "Null is not allowed", "a value");
    return collections::Null{};
  }
  try {
    return convert(value, field);
  } catch (const com::Error& error) {
    if (error.number() != com::error::kOverflow) throw;
    fail(field, shown(value) + " needs more digits than a number has", "at most 38 digits");
  }
}

}  // namespace velmora::ado
