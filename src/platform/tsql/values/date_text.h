#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmora/collections/date.h"

namespace velmora::tsql::values {

/// The names of months and days of the week, in English; month from 1, Sunday is 1.
std::string_view monthName(int month);
std::string_view dayName(int weekday);

/// A date by the style of CONVERT. Error 281 for a style that is none, or that shows nothing of
/// a value without a time of day (`withoutTime`, the type date).
std::string dateText(collections::Date value, std::int32_t style, bool withoutTime);

/// As a cast of a datetime2 says it: seven decimals of the second.
std::string longDateText(collections::Date value);

}  // namespace velmora::tsql::values
