#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Texts as numbers, as CAST and CONVERT read them: blanks around the number and a sign are
/// allowed. Errors are ValueErrors. `target` is the name of the type asked for.
namespace velmora::tsql::values {

/// For int, smallint, tinyint and bigint: digits; blanks alone are 0. Errors 245, and 244, 248
/// or 8115 beyond the type's range.
std::int64_t wholeNumber(std::string_view text, std::string_view target);

/// As wholeNumber, and true or false: 0 or 1.
std::int32_t bitNumber(std::string_view text);

/// Digits with a point and an exponent; blanks alone are 0. Errors 8114, 232 beyond float.
double floatNumber(std::string_view text);

/// Digits with a point as those of a decimal(precision, scale), rounded half away from zero.
/// Errors 8114 and 8115.
std::string decimalDigits(std::string_view text, std::int32_t precision, std::int32_t scale);

/// As decimalDigits of money, with a currency sign and commas; blanks alone are 0. Error 235;
/// whoever takes the digits checks the range.
std::string moneyDigits(std::string_view text);

}  // namespace velmora::tsql::values
