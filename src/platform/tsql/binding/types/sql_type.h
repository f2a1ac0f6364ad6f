#pragma once

#include <cstdint>
#include <string>

#include "platform/tsql/syntax/ast_expression.h"
#include "velmora/ado/enums.h"
#include "velmora/ado/rowset.h"

namespace velmora::tsql {

/// Kinds of T-SQL types, in rising order of precedence: where two types meet, the
/// value of the lower one is converted to the higher one.
enum class SqlKind : std::uint8_t {
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
  smallMoney,
  money,
  decimal,
  real,
  floating,  ///< float
  date,
  smallDateTime,
  dateTime,
  dateTime2,
};

/// A T-SQL type with its size.
struct SqlType {
  /// The length of varchar(max) and nvarchar(max).
  static constexpr std::int64_t kMaxLength = -1;

  SqlKind kind = SqlKind::untypedNull;
  int precision = 0;        ///< decimal, money: digits
  int scale = 0;            ///< decimal, money: digits of the fraction
  std::int64_t length = 0;  ///< texts: characters, or kMaxLength

  friend bool operator==(const SqlType&, const SqlType&) = default;

  static SqlType of(SqlKind kind);
  static SqlType integer() { return of(SqlKind::integer); }
  static SqlType bit() { return of(SqlKind::bit); }
  static SqlType dateTime() { return of(SqlKind::dateTime); }
  static SqlType floating() { return of(SqlKind::floating); }
  static SqlType decimal(int precision, int scale);
  static SqlType varchar(std::int64_t length);
  static SqlType nvarchar(std::int64_t length);

  bool isText() const noexcept {
    return kind >= SqlKind::character && kind <= SqlKind::uniqueIdentifier;
  }
  /// nchar and nvarchar.
  bool isNational() const noexcept { return kind == SqlKind::nchar || kind == SqlKind::nvarchar; }
  /// bit, tinyint, smallint, int and bigint.
  bool isInteger() const noexcept { return kind >= SqlKind::bit && kind <= SqlKind::bigInt; }
  bool isMoney() const noexcept { return kind == SqlKind::smallMoney || kind == SqlKind::money; }
  /// decimal, numeric and money.
  bool isDecimal() const noexcept { return isMoney() || kind == SqlKind::decimal; }
  bool isExact() const noexcept { return isInteger() || isDecimal(); }
  bool isApproximate() const noexcept { return kind == SqlKind::real || kind == SqlKind::floating; }
  bool isNumber() const noexcept { return isExact() || isApproximate(); }
  bool isDate() const noexcept { return kind >= SqlKind::date; }
};

/// The type that `written` names. T-SQL's defaults where sizes are left out:
/// decimal(18,0), and `lengthOmitted` characters of a text: 1 in a declaration, 30 in a
/// cast. Raises com::Error kProvider with the place for sizes the type cannot have and
/// for types without a counterpart here (time).
SqlType sqlType(const DataType& written, std::int64_t lengthOmitted = 1);

/// The type as a column has it: NULL alone is an int, a text longer than its type can declare
/// is varchar(max) or nvarchar(max).
SqlType columnType(const SqlType& type);

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
