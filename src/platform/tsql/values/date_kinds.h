#pragma once

#include <cstdint>

#include "velmora/collections/date.h"

namespace velmora::tsql::values {

/// The types of dates, as functions of the engine name them.
enum class DateKind : std::int32_t { date, smallDateTime, dateTime, dateTime2 };

/// The time as a value of the type holds it: a date has no time of day, a smalldatetime whole
/// minutes (29.999 seconds and more go up), a datetime three hundredths of a second, shown in
/// thousandths. Error 242 where the type has no such day.
collections::Date heldAs(collections::Date value, std::int32_t kind);

/// Days since 1900-01-01 as a datetime or smalldatetime, and back. Error 8115 beyond the type.
collections::Date dateOfDays(double days, std::int32_t kind);
double daysOf(collections::Date value);

/// a + b and a - b of datetimes, each counted from 1900-01-01; error 8115.
collections::Date sumOfDates(collections::Date a, collections::Date b);
collections::Date differenceOfDates(collections::Date a, collections::Date b);

}  // namespace velmora::tsql::values
