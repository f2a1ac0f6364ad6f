#include "platform/ado/odbc/parameters.h"

#include <algorithm>
#include <array>

#include "platform/ado/odbc/wide_text.h"
#include "velmora/ado/data_type.h"

namespace velmora::ado::odbc {

namespace {

/// How a parameter of an ADO type is declared to the driver.
struct Declaration {
  DataTypeEnum ado;
  SQLSMALLINT cType;
  SQLSMALLINT sqlType;
  SQLULEN size = 0;        ///< 0 for a text: its size, or else its length
  SQLSMALLINT digits = 0;  ///< of the fraction; of a decimal: those of the value
};

Declaration declarationOf(DataTypeEnum type) {
  static constexpr std::array declarations{
      Declaration{adBoolean, SQL_C_BIT, SQL_BIT, 1},
      Declaration{adUnsignedTinyInt, SQL_C_SBIGINT, SQL_TINYINT, 3},
      Declaration{adSmallInt, SQL_C_SBIGINT, SQL_SMALLINT, 5},
      Declaration{adInteger, SQL_C_SBIGINT, SQL_INTEGER, 10},
      Declaration{adBigInt, SQL_C_SBIGINT, SQL_BIGINT, 19},
      Declaration{adSingle, SQL_C_DOUBLE, SQL_REAL, 7},
      Declaration{adDouble, SQL_C_DOUBLE, SQL_DOUBLE, 15},
      Declaration{adCurrency, SQL_C_CHAR, SQL_DECIMAL, 19},
      Declaration{adDecimal, SQL_C_CHAR, SQL_DECIMAL, 38},
      Declaration{adNumeric, SQL_C_CHAR, SQL_DECIMAL, 38},
      Declaration{adDate, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3},
      Declaration{adDBDate, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3},
      Declaration{adDBTimeStamp, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3},
      Declaration{adChar, SQL_C_WCHAR, SQL_CHAR},
      Declaration{adVarChar, SQL_C_WCHAR, SQL_VARCHAR},
      Declaration{adLongVarChar, SQL_C_WCHAR, SQL_LONGVARCHAR},
      Declaration{adWChar, SQL_C_WCHAR, SQL_WCHAR},
      Declaration{adVarWChar, SQL_C_WCHAR, SQL_WVARCHAR},
      Declaration{adLongVarWChar, SQL_C_WCHAR, SQL_WLONGVARCHAR},
  };
  const auto* found = std::ranges::find(declarations, type, &Declaration::ado);
  if (found != declarations.end()) return *found;
  return {type, SQL_C_WCHAR, SQL_WVARCHAR};
}

/// To the thousandths of a second that the server's datetime has at most.
SQL_TIMESTAMP_STRUCT timestampOf(collections::Date date) {
  const auto parts = date.parts();
  SQL_TIMESTAMP_STRUCT time{};
  time.year = static_cast<SQLSMALLINT>(parts.year);
  time.month = static_cast<SQLUSMALLINT>(parts.month);
  time.day = static_cast<SQLUSMALLINT>(parts.day);
  time.hour = static_cast<SQLUSMALLINT>(parts.hour);
  time.minute = static_cast<SQLUSMALLINT>(parts.minute);
  time.second = static_cast<SQLUSMALLINT>(parts.second);
  time.fraction = static_cast<SQLUINTEGER>(parts.microsecond / 1000 * 1'000'000);
  return time;
}

struct Place {
  SQLPOINTER data;
  SQLLEN bytes;
};

Place placeOf(std::u16string& text) {
  return {text.data(), static_cast<SQLLEN>(text.size() * sizeof(char16_t))};
}
Place placeOf(std::string& text) {
  return {text.data(), static_cast<SQLLEN>(text.size())};
}
template <class Value>
Place placeOf(Value& value) {
  return {&value, sizeof value};
}

}  // namespace

BoundParameters::Buffer BoundParameters::bufferOf(const ParameterValue& parameter) {
  const Variant& value = parameter.value;
  if (value.isNull() || value.isEmpty()) return {};
  switch (declarationOf(parameter.type).cType) {
    case SQL_C_BIT:
      return {static_cast<unsigned char>(value.toBool() ? 1 : 0), 0};
    case SQL_C_SBIGINT:
      return {value.toInt64(), 0};
    case SQL_C_DOUBLE:
      return {value.toDouble(), 0};
    case SQL_C_CHAR:
      return {value.toDecimal().toString(), 0};
    case SQL_C_TYPE_TIMESTAMP:
      return {timestampOf(value.toDate()), 0};
    default:
      return {toWide(value.toText()), 0};
  }
}

BoundParameters::BoundParameters(const Statement& statement,
                                 std::span<const ParameterValue> parameters) {
  for (const ParameterValue& parameter : parameters) {
    Buffer& buffer = buffers_.emplace_back(bufferOf(parameter));
    const auto [data, bytes] = std::visit([](auto& value) { return placeOf(value); }, buffer.value);
    if (buffer.length != SQL_NULL_DATA) buffer.length = bytes;
    Declaration declared = declarationOf(parameter.type);
    if (kindOf(parameter.type) == DataKind::decimal && !parameter.value.isNull())
      declared.digits = static_cast<SQLSMALLINT>(parameter.value.toDecimal().scale());
    if (declared.size == 0)
      declared.size = static_cast<SQLULEN>(
          std::max<std::int64_t>({1, parameter.size, bytes / std::int64_t{sizeof(char16_t)}}));
    statement.check(SQLBindParameter(statement.handle(), static_cast<SQLUSMALLINT>(buffers_.size()),
                                     SQL_PARAM_INPUT, declared.cType, declared.sqlType,
                                     declared.size, declared.digits, data, bytes, &buffer.length));
  }
}

}  // namespace velmora::ado::odbc
