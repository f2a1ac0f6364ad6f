#include "platform/ado/odbc/columns.h"

#include <array>

#include "platform/ado/odbc/wide_text.h"
#include "velmora/ado/data_type.h"
#include "velmora/com/error.h"

namespace velmora::ado::odbc {

namespace {

using collections::Date;
using collections::Decimal;
using collections::Null;

/// The driver's type as ADO names it.
DataTypeEnum adoType(SQLSMALLINT sqlType) {
  struct Pair {
    SQLSMALLINT sql;
    DataTypeEnum ado;
  };
  static constexpr std::array pairs{
      Pair{SQL_BIT, adBoolean},
      Pair{SQL_TINYINT, adUnsignedTinyInt},
      Pair{SQL_SMALLINT, adSmallInt},
      Pair{SQL_INTEGER, adInteger},
      Pair{SQL_BIGINT, adBigInt},
      Pair{SQL_REAL, adSingle},
      Pair{SQL_FLOAT, adDouble},
      Pair{SQL_DOUBLE, adDouble},
      Pair{SQL_DECIMAL, adNumeric},
      Pair{SQL_NUMERIC, adNumeric},
      Pair{SQL_TYPE_DATE, adDBDate},
      Pair{SQL_TYPE_TIMESTAMP, adDBTimeStamp},
      Pair{SQL_CHAR, adChar},
      Pair{SQL_VARCHAR, adVarChar},
      Pair{SQL_LONGVARCHAR, adLongVarChar},
      Pair{SQL_WCHAR, adWChar},
      Pair{SQL_WVARCHAR, adVarWChar},
      Pair{SQL_WLONGVARCHAR, adLongVarWChar},
  };
  for (const auto& [sql, ado] : pairs)
    if (sql == sqlType) return ado;
  return adVarWChar;
}

/// Characters of a text column, -1 without a limit worth the name.
std::int64_t textSize(SQLULEN size, DataTypeEnum type) {
  constexpr SQLULEN kLargest = 8000;
  const bool isLong = type == adLongVarChar || type == adLongVarWChar;
  return isLong || size == 0 || size > kLargest ? -1 : static_cast<std::int64_t>(size);
}

FieldDefinition describeColumn(const Statement& statement, SQLUSMALLINT number) {
  const auto column = statement.describe(number);
  FieldDefinition field;
  field.name = column.name;
  field.type = adoType(column.type);
  field.nullable = column.nullable != SQL_NO_NULLS;
  field.definedSize = fixedSize(field.type);
  if (kindOf(field.type) == DataKind::text) field.definedSize = textSize(column.size, field.type);
  if (field.type == adNumeric) {
    field.precision = static_cast<int>(column.size);
    field.numericScale = column.scale;
  }
  return field;
}

/// Some drivers leave out the zero before the point.
std::string withLeadingZero(std::string digits) {
  const std::size_t first = digits.starts_with('-') ? 1 : 0;
  if (digits[first] == '.') digits.insert(first, 1, '0');
  return digits;
}

/// Reads the cells of one column of the current row.
class Cell {
 public:
  Cell(const Statement& statement, std::size_t index, const FieldDefinition& field)
      : statement_(statement), number_(static_cast<SQLUSMALLINT>(index + 1)), field_(field) {}

  /// make(value) for a value of fixed width that the driver converts to `cType`.
  template <class Value, class Make>
  Variant fixed(SQLSMALLINT cType, Make make) const {
    Value value{};
    SQLLEN length = 0;
    statement_.check(
        SQLGetData(statement_.handle(), number_, cType, &value, sizeof value, &length));
    if (length == SQL_NULL_DATA) return Null{};
    return make(value);
  }

  template <class Value>
  Variant number(SQLSMALLINT cType) const {
    return fixed<Value>(cType, [](Value value) { return Variant(value); });
  }

  Variant decimal() const {
    std::array<char, 128> digits{};
    SQLLEN length = 0;
    statement_.check(SQLGetData(statement_.handle(), number_, SQL_C_CHAR, digits.data(),
                                static_cast<SQLLEN>(digits.size()), &length));
    if (length == SQL_NULL_DATA) return Null{};
    const auto value = Decimal::tryParse(withLeadingZero(digits.data()));
    if (!value) fail("'" + std::string(digits.data()) + "' is no number of at most 38 digits");
    return value->rescaled(field_.numericScale);
  }

  Variant date() const {
    return fixed<SQL_TIMESTAMP_STRUCT>(SQL_C_TYPE_TIMESTAMP, [this](const auto& time) {
      try {
        return Variant(Date::fromParts({time.year, time.month, time.day, time.hour, time.minute,
                                        time.second, static_cast<int>(time.fraction / 1000)}));
      } catch (const com::Error& error) {
        fail(error.description());
      }
    });
  }

  Variant text() const {
    std::u16string wide;
    std::array<char16_t, 2048> piece{};
    for (;;) {
      SQLLEN bytes = 0;
      const auto code =
          SQLGetData(statement_.handle(), number_, SQL_C_WCHAR, piece.data(), sizeof piece, &bytes);
      if (code == SQL_NO_DATA) break;
      statement_.check(code);
      if (bytes == SQL_NULL_DATA) return Null{};
      // A piece that was cut ends with a zero; how much is left need not be known.
      constexpr auto kWhole = static_cast<SQLLEN>(sizeof piece - sizeof(char16_t));
      const bool cut = bytes == SQL_NO_TOTAL || bytes > kWhole;
      wide.append(piece.data(),
                  cut ? piece.size() - 1 : static_cast<std::size_t>(bytes) / sizeof(char16_t));
      if (!cut) break;
    }
    auto utf8 = tryToUtf8(wide);
    if (!utf8)
      fail("'" + toReadableUtf8(wide) + "' is no valid Unicode text (half a surrogate pair)");
    return Variant(*utf8);
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throwError("Column '" + field_.name + "': " + what + ".");
  }

  const Statement& statement_;
  SQLUSMALLINT number_;
  const FieldDefinition& field_;
};

}  // namespace

std::vector<FieldDefinition> describeColumns(const Statement& statement) {
  SQLSMALLINT count = 0;
  statement.check(SQLNumResultCols(statement.handle(), &count));
  std::vector<FieldDefinition> fields;
  for (SQLUSMALLINT number = 1; number <= count; ++number)
    fields.push_back(describeColumn(statement, number));
  return fields;
}

Variant readCell(const Statement& statement, std::size_t index, const FieldDefinition& field) {
  const Cell cell(statement, index, field);
  switch (field.type) {
    case adBoolean:
      return cell.fixed<unsigned char>(SQL_C_BIT, [](auto bit) { return Variant(bit != 0); });
    case adUnsignedTinyInt:
      return cell.fixed<unsigned char>(
          SQL_C_UTINYINT, [](auto value) { return Variant(static_cast<std::int16_t>(value)); });
    case adSmallInt:
      return cell.number<std::int16_t>(SQL_C_SSHORT);
    case adInteger:
      return cell.number<std::int32_t>(SQL_C_SLONG);
    case adBigInt:
      return cell.number<std::int64_t>(SQL_C_SBIGINT);
    case adSingle:
    case adDouble:
      return cell.number<double>(SQL_C_DOUBLE);
    case adNumeric:
      return cell.decimal();
    case adDBDate:
    case adDBTimeStamp:
      return cell.date();
    default:
      return cell.text();
  }
}

}  // namespace velmora::ado::odbc
