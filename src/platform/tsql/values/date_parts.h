#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmora/collections/date.h"

/// The parts of a date, by their long names in small letters: year, quarter, month, dayofyear,
/// day, week, weekday, hour, minute, second, millisecond, microsecond. Weeks begin on Sunday.
namespace velmora::tsql::values {

/// datepart and datename.
std::int32_t datePart(std::string_view part, collections::Date value);
std::string dateName(std::string_view part, collections::Date value);

/// The date moved by `count` parts, as a value of the type `kind` (DateKind); a month that is
/// too short gives its last day. Error 517 beyond the type.
collections::Date dateAdd(std::string_view part, std::int32_t count, collections::Date value,
                          std::int32_t kind);

/// How many borders of the part lie between the two. Error 535 beyond int.
std::int32_t dateDiff(std::string_view part, collections::Date from, collections::Date to);

/// The last day of the month `months` later; error 517.
collections::Date endOfMonth(collections::Date value, std::int32_t months);

}  // namespace velmora::tsql::values
