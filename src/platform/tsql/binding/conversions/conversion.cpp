#include "platform/tsql/binding/conversions/conversion.h"

#include "platform/tsql/binding/conversions/conversion_date.h"
#include "platform/tsql/binding/conversions/conversion_number.h"
#include "platform/tsql/binding/conversions/text_rules.h"
#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

using collections::Null;

Bound retyped(const Bound& value, const SqlType& type) {
  Bound result = value;
  result.type = type;
  return result;
}

[[noreturn]] void refuseConversion(const Bound& value, const SqlType& type, Position position) {
  refuse(position, "conversion from " + declaration(value.type) + " to " + declaration(type));
}

Bound identifier(const Bound& value, const SqlType& type, Position position) {
  if (value.type.kind == SqlKind::uniqueIdentifier) return value;
  if (!value.type.isText()) refuseConversion(value, type, position);
  return computed("velmora_identifier(" + value.sql + ")", type, true);
}

Bound toText(const Bound& value, const SqlType& type, Position position, std::optional<int> style) {
  if (type.kind == SqlKind::uniqueIdentifier) return identifier(value, type, position);
  if (value.type.isText()) return cutTo(value, type);
  return cutTo(
      value.type.isDate() ? dateText(value, style) : numberToText(value, type, style.value_or(0)),
      type);
}

Bound convert(Context& context, const Bound& value, const SqlType& type, Position position,
              std::optional<int> style) {
  if (value.isNull() || value.type.kind == SqlKind::untypedNull) {
    return value.constant ? constantOf(Null{}, type) : computed(castSql(value.sql, type), type);
  }
  if (type.isText()) return toText(value, type, position, style);
  if (value.type == type) return value;
  if (type.isDate()) {
    if (value.type.isText()) return textToDate(value, type, style.value_or(0));
    return value.type.isDate() ? dateToDate(value, type) : numberToDate(value, type, position);
  }
  if (value.type.isDate()) return dateToNumber(value, type, position);
  return value.type.isText() ? textToNumber(context, value, type)
                             : numberToNumber(context, value, type);
}

}  // namespace

Bound convertTo(Context& context, const Bound& value, const SqlType& type, Position position) {
  if (type.kind == SqlKind::uniqueIdentifier) {
    return convert(context, value, type, position, std::nullopt);
  }
  // A text that meets a text is not cut: the common type is wide enough for both.
  if (value.type.isText() && type.isText()) return retyped(value, type);
  return convert(context, value, type, position, std::nullopt);
}

Bound castTo(Context& context, const Bound& value, const SqlType& type, Position position,
             std::optional<int> style) {
  Bound result = convert(context, value, type, position, style);
  result.literal = false;
  return result;
}

Bound assignTo(Context& context, const Bound& value, const SqlType& type, std::string_view column,
               Position position) {
  if (type.isText() && !value.isNull() && value.type.kind != SqlKind::untypedNull) {
    if (value.type.isNumber()) return convert(context, value, type, position, std::nullopt);
    const SqlType unlimited = SqlType::nvarchar(SqlType::kMaxLength);
    const Bound text =
        value.type.isText() ? value : convert(context, value, unlimited, position, std::nullopt);
    return fittedTo(text, type, column);
  }
  return convert(context, value, type, position, std::nullopt);
}

}  // namespace velmora::tsql
