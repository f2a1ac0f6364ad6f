#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as texts, as CAST and CONVERT write them.
namespace velmora::tsql::values {

/// A whole number as a text of at most `room` characters; a longer one is "*".
std::string integerText(std::int64_t value, std::int32_t room);

/// A float by the style of CONVERT: 0 at most six digits, with an exponent where it is below
/// -4 or above 5; 1 eight digits, 2 sixteen and 3 seventeen, always with an exponent, which
/// has three digits. ValueError 281 for any other style.
std::string floatText(double value, std::int32_t style);

/// Money, given as its digits, by the style of CONVERT: 0 two decimals, 1 the same with a
/// comma every three digits, 2 and 126 four decimals. ValueError 281 for any other style.
std::string moneyText(std::string_view digits, std::int32_t style);

/// The digits of a decimal with the zero that a value below one has before its point.
std::string withLeadingZero(std::string_view digits);

/// A number's text where it has room; ValueError 8115 naming the type `target` where not.
std::string_view roomFor(std::string_view text, std::int32_t room, std::string_view target);

}  // namespace velmora::tsql::values
