#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "velmora/ado/enums.h"
#include "velmora/ado/rowset.h"

namespace velmora::tsql {

/// Kinds of T-SQL types, in rising order of precedence: where two types meet, the
/// value of the lower one is converted to the higher one.
enum class TypeKind : std::uint8_t {
  untypedNull,  ///< the word NULL by itself
  character,    ///< char(n)
  varchar,
  nchar,
  nvarchar,
  uniqueIdentifier,
  bit,
  tinyInt,
  smallInt,
  integer,
  bigInt,
  money,
  decimal,
  real,
  floating,
  date,
  dateTime,
};

/// A T-SQL type with its size.
struct SqlType {
  /// The length of varchar(max) and nvarchar(max).
  static constexpr std::int64_t kMaxLength = -1;

  TypeKind kind = TypeKind::untypedNull;
  int precision = 0;        ///< decimal, money: digits
  int scale = 0;            ///< decimal, money: digits of the fraction
  std::int64_t length = 0;  ///< texts: characters, or kMaxLength

  friend bool operator==(const SqlType&, const SqlType&) = default;

  static SqlType of(TypeKind kind);
  static SqlType integer() { return of(TypeKind::integer); }
  static SqlType bit() { return of(TypeKind::bit); }
  static SqlType dateTime() { return of(TypeKind::dateTime); }
  static SqlType floating() { return of(TypeKind::floating); }
  static SqlType decimal(int precision, int scale);
  static SqlType varchar(std::int64_t length);
  static SqlType nvarchar(std::int64_t length);

  bool isText() const noexcept {
    return kind >= TypeKind::character && kind <= TypeKind::uniqueIdentifier;
  }
  /// nchar and nvarchar.
  bool isNational() const noexcept {
    return kind == TypeKind::nchar || kind == TypeKind::nvarchar;
  }
  /// bit, tinyint, smallint, int and bigint.
  bool isInteger() const noexcept {
    return kind >= TypeKind::bit && kind <= TypeKind::bigInt;
  }
  /// decimal, numeric and money.
  bool isDecimal() const noexcept {
    return kind == TypeKind::money || kind == TypeKind::decimal;
  }
  bool isExact() const noexcept { return isInteger() || isDecimal(); }
  bool isApproximate() const noexcept {
    return kind == TypeKind::real || kind == TypeKind::floating;
  }
  bool isNumber() const noexcept { return isExact() || isApproximate(); }
  bool isDate() const noexcept { return kind >= TypeKind::date; }
};

/// The type a declaration names: `name` in any case ("int", "decimal", "numeric",
/// "datetime", "smalldatetime", "nvarchar", ...), `arguments` what stands in its
/// parentheses (kMaxLength for "max"). Defaults are T-SQL's: decimal(18,0), char(1);
/// pass `lengthOmitted` (30 in a cast, 1 in a declaration) for texts without a length.
/// nullopt when there is no such type or the arguments do not fit it.
std::optional<SqlType> declaredType(std::string_view name, std::span<const std::int64_t> arguments,
                                    std::int64_t lengthOmitted = 1);

/// The declaration, for instance "decimal(28,4)" or "nvarchar(max)".
std::string declaration(const SqlType& type);

/// The type DuckDB stores it as, for instance "DECIMAL(28,4)"; bit is TINYINT,
/// datetime TIMESTAMP, money DECIMAL(19,4), every text VARCHAR, untyped null INTEGER.
std::string engineType(const SqlType& type);

/// How a recordset shows a column of the type; bit is adBoolean, money adCurrency.
ado::FieldDefinition fieldDefinition(std::string name, const SqlType& type, bool nullable = true);

/// The type of a statement parameter declared with an ADO type and size.
SqlType parameterType(ado::DataTypeEnum type, std::int64_t size);

}  // namespace velmora::tsql
