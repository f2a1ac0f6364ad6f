#include "platform/tsql/binding/types/sql_type.h"

#include <array>

#include "platform/tsql/binding/errors.h"

namespace velmora::tsql {
namespace {

constexpr int kMaxPrecision = 38;
constexpr std::int64_t kMaxBytes = 8000;

/// What is fixed about a kind, in the order of SqlKind.
struct KindTraits {
  std::string_view name;
  std::string_view engine;
  int precision;
  int scale;
  ado::DataTypeEnum adoType;
  int bytes;
};

constexpr std::array<KindTraits, 20> kTraits = {{
    {"int", "INTEGER", 0, 0, ado::adInteger, 4},
    {"char", "VARCHAR", 0, 0, ado::adChar, 0},
    {"varchar", "VARCHAR", 0, 0, ado::adVarChar, 0},
    {"nchar", "VARCHAR", 0, 0, ado::adWChar, 0},
    {"nvarchar", "VARCHAR", 0, 0, ado::adVarWChar, 0},
    {"uniqueidentifier", "VARCHAR", 0, 0, ado::adGUID, 16},
    {"bit", "TINYINT", 1, 0, ado::adBoolean, 2},
    {"tinyint", "UTINYINT", 3, 0, ado::adUnsignedTinyInt, 1},
    {"smallint", "SMALLINT", 5, 0, ado::adSmallInt, 2},
    {"int", "INTEGER", 10, 0, ado::adInteger, 4},
    {"bigint", "BIGINT", 19, 0, ado::adBigInt, 8},
    {"smallmoney", "", 10, 4, ado::adCurrency, 8},
    {"money", "", 19, 4, ado::adCurrency, 8},
    {"decimal", "", 18, 0, ado::adNumeric, 19},
    {"real", "FLOAT", 24, 0, ado::adSingle, 4},
    {"float", "DOUBLE", 53, 0, ado::adDouble, 8},
    {"date", "DATE", 0, 0, ado::adDBDate, 6},
    {"smalldatetime", "TIMESTAMP", 0, 0, ado::adDBTimeStamp, 16},
    {"datetime", "TIMESTAMP", 0, 0, ado::adDBTimeStamp, 16},
    {"datetime2", "TIMESTAMP", 0, 0, ado::adDBTimeStamp, 16},
}};

const KindTraits& traits(SqlKind kind) {
  return kTraits[static_cast<std::size_t>(kind)];
}

SqlType textType(SqlKind kind, const DataType& written, std::int64_t lengthOmitted) {
  SqlType type{kind, 0, 0, lengthOmitted};
  if (written.max) type.length = SqlType::kMaxLength;
  if (written.size) type.length = *written.size;
  if (written.size && (*written.size < 1 || *written.size > kMaxBytes)) {
    raiseAt(written.position, 131,
            "The size " + std::to_string(*written.size) + " of a text type must be from 1 to 8000");
  }
  return type;
}

SqlType decimalType(const DataType& written) {
  const int precision = written.size.value_or(18);
  const int scale = written.scale.value_or(0);
  if (precision < 1 || precision > kMaxPrecision || scale < 0 || scale > precision) {
    raiseAt(written.position, 183,
            "decimal(" + std::to_string(precision) + "," + std::to_string(scale) +
                ") must have 1 to 38 digits and no more than those behind the point");
  }
  return SqlType::decimal(precision, scale);
}

}  // namespace

SqlType SqlType::of(SqlKind kind) {
  SqlType type{kind, 0, 0, 0};
  if (type.isExact()) {
    type.precision = traits(kind).precision;
    type.scale = traits(kind).scale;
  }
  if (kind == SqlKind::uniqueIdentifier) type.length = 36;
  return type;
}

SqlType SqlType::decimal(int precision, int scale) {
  return {SqlKind::decimal, precision, scale, 0};
}
SqlType SqlType::varchar(std::int64_t length) {
  return {SqlKind::varchar, 0, 0, length};
}
SqlType SqlType::nvarchar(std::int64_t length) {
  return {SqlKind::nvarchar, 0, 0, length};
}

SqlType sqlType(const DataType& written, std::int64_t lengthOmitted) {
  switch (written.kind) {
    case TypeKind::Bit:
      return SqlType::of(SqlKind::bit);
    case TypeKind::TinyInt:
      return SqlType::of(SqlKind::tinyInt);
    case TypeKind::SmallInt:
      return SqlType::of(SqlKind::smallInt);
    case TypeKind::Int:
      return SqlType::integer();
    case TypeKind::BigInt:
      return SqlType::of(SqlKind::bigInt);
    case TypeKind::Decimal:
      return decimalType(written);
    case TypeKind::SmallMoney:
      return SqlType::of(SqlKind::smallMoney);
    case TypeKind::Money:
      return SqlType::of(SqlKind::money);
    case TypeKind::Float:
      return SqlType::of(written.size.value_or(53) <= 24 ? SqlKind::real : SqlKind::floating);
    case TypeKind::Real:
      return SqlType::of(SqlKind::real);
    case TypeKind::Date:
      return SqlType::of(SqlKind::date);
    case TypeKind::DateTime:
      return SqlType::dateTime();
    case TypeKind::SmallDateTime:
      return SqlType::of(SqlKind::smallDateTime);
    case TypeKind::DateTime2:
      return SqlType::of(SqlKind::dateTime2);
    case TypeKind::Char:
      return textType(SqlKind::character, written, lengthOmitted);
    case TypeKind::VarChar:
      return textType(SqlKind::varchar, written, lengthOmitted);
    case TypeKind::NChar:
      return textType(SqlKind::nchar, written, lengthOmitted);
    case TypeKind::NVarChar:
      return textType(SqlKind::nvarchar, written, lengthOmitted);
    case TypeKind::Text:
      return SqlType::varchar(SqlType::kMaxLength);
    case TypeKind::NText:
      return SqlType::nvarchar(SqlType::kMaxLength);
    case TypeKind::UniqueIdentifier:
      return SqlType::of(SqlKind::uniqueIdentifier);
    case TypeKind::Time:
      break;
  }
  refuse(written.position, "the type time");
}

SqlType columnType(const SqlType& type) {
  if (type.kind == SqlKind::untypedNull) return SqlType::integer();
  if (!type.isText() || type.length <= (type.isNational() ? kMaxBytes / 2 : kMaxBytes)) return type;
  return type.isNational() ? SqlType::nvarchar(SqlType::kMaxLength)
                           : SqlType::varchar(SqlType::kMaxLength);
}

std::string declaration(const SqlType& type) {
  std::string text(traits(type.kind).name);
  if (type.kind == SqlKind::decimal) {
    return text + "(" + std::to_string(type.precision) + "," + std::to_string(type.scale) + ")";
  }
  if (!type.isText() || type.kind == SqlKind::uniqueIdentifier) return text;
  const bool unlimited = type.length == SqlType::kMaxLength;
  return text + "(" + (unlimited ? std::string("max") : std::to_string(type.length)) + ")";
}

std::string engineType(const SqlType& type) {
  if (!type.isDecimal()) return std::string(traits(type.kind).engine);
  return "DECIMAL(" + std::to_string(type.precision) + "," + std::to_string(type.scale) + ")";
}

ado::FieldDefinition fieldDefinition(std::string name, const SqlType& type, bool nullable) {
  const KindTraits& known = traits(type.kind);
  ado::FieldDefinition field;
  field.name = std::move(name);
  field.type = known.adoType;
  field.definedSize = type.isText() ? type.length : known.bytes;
  field.nullable = nullable;
  if (type.isDecimal()) {
    field.precision = type.precision;
    field.numericScale = type.scale;
  }
  return field;
}

SqlType parameterType(ado::DataTypeEnum type, std::int64_t size) {
  const std::int64_t length = size > 0 ? size : SqlType::kMaxLength;
  switch (type) {
    case ado::adBoolean:
      return SqlType::bit();
    case ado::adUnsignedTinyInt:
      return SqlType::of(SqlKind::tinyInt);
    case ado::adSmallInt:
      return SqlType::of(SqlKind::smallInt);
    case ado::adInteger:
      return SqlType::integer();
    case ado::adBigInt:
      return SqlType::of(SqlKind::bigInt);
    case ado::adSingle:
      return SqlType::of(SqlKind::real);
    case ado::adDouble:
      return SqlType::floating();
    case ado::adCurrency:
      return SqlType::of(SqlKind::money);
    case ado::adDecimal:
    case ado::adNumeric:
      return SqlType::decimal(kMaxPrecision, 10);
    case ado::adDBDate:
      return SqlType::of(SqlKind::date);
    case ado::adDate:
    case ado::adDBTime:
    case ado::adDBTimeStamp:
      return SqlType::dateTime();
    case ado::adChar:
      return {SqlKind::character, 0, 0, length};
    case ado::adWChar:
      return {SqlKind::nchar, 0, 0, length};
    case ado::adBSTR:
    case ado::adVarWChar:
    case ado::adLongVarWChar:
      return SqlType::nvarchar(length);
    case ado::adGUID:
      return SqlType::of(SqlKind::uniqueIdentifier);
    case ado::adVarChar:
    case ado::adLongVarChar:
      return SqlType::varchar(length);
    default:
      throw com::Error(com::error::kAdoNotSupported, std::string(kErrorSource),
                       "A parameter of ADO type " + std::to_string(type) +
                           " is not supported by the embedded database");
  }
}

}  // namespace velmora::tsql
