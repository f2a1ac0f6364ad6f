#include "platform/tsql/values/date_parts.h"

#include <algorithm>
#include <limits>

#include "platform/tsql/values/date_kinds.h"
#include "platform/tsql/values/date_text.h"
#include "platform/tsql/values/value_error.h"

namespace velmora::tsql::values {
namespace {

using collections::Date;

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = 86400 * kSecond;

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

std::int64_t dayNumber(Date value) {
  return floorDivide(value.microseconds(), kDay);
}

/// 0 is Sunday; 1970-01-01 was a Thursday.
std::int64_t weekdayOf(Date value) {
  const std::int64_t days = dayNumber(value) + 4;
  return days - floorDivide(days, 7) * 7;
}

std::int64_t monthNumber(Date value) {
  const auto parts = value.parts();
  return parts.year * 12LL + parts.month - 1;
}

/// The microseconds of a part that has always as many; 0: it has not.
std::int64_t unitOf(std::string_view part) {
  if (part == "day" || part == "dayofyear" || part == "weekday") return kDay;
  if (part == "week") return 7 * kDay;
  if (part == "hour") return 3600 * kSecond;
  if (part == "minute") return 60 * kSecond;
  if (part == "second") return kSecond;
  if (part == "millisecond") return 1000;
  if (part == "microsecond") return 1;
  return 0;
}

std::int64_t monthsOf(std::string_view part) {
  if (part == "year") return 12;
  return part == "quarter" ? 3 : 1;
}

[[noreturn]] void raiseOverflow() {
  throw ValueError("517: Adding a value to a date caused an overflow.");
}

Date movedByMonths(Date value, std::int64_t months) {
  const auto parts = value.parts();
  const std::int64_t target = monthNumber(value) + months;
  if (target < 12 || target >= 120000) raiseOverflow();
  const int year = static_cast<int>(target / 12), month = static_cast<int>(target % 12) + 1;
  const bool last = target + 1 == 120000;
  const Date first = Date::ymd(year, month, 1);
  const Date next = last ? Date::fromMicroseconds(Date::ymd(9999, 12, 31).microseconds() + kDay)
                         : Date::ymd(month == 12 ? year + 1 : year, month % 12 + 1, 1);
  const std::int64_t length = dayNumber(next) - dayNumber(first);
  const std::int64_t day = std::min<std::int64_t>(parts.day, length) - 1;
  const std::int64_t time = value.microseconds() - dayNumber(value) * kDay;
  return Date::fromMicroseconds(first.microseconds() + day * kDay + time);
}

/// The place of the value on the part's scale: its borders are where it changes.
std::int64_t scaleOf(std::string_view part, Date value) {
  if (part == "year") return value.parts().year;
  if (part == "quarter") return floorDivide(monthNumber(value), 3);
  if (part == "month") return monthNumber(value);
  if (part == "week") return floorDivide(dayNumber(value) + 4, 7);
  return floorDivide(value.microseconds(), unitOf(part));
}

}  // namespace

std::int32_t datePart(std::string_view part, Date value) {
  const auto parts = value.parts();
  const auto yearDay =
      static_cast<std::int32_t>(dayNumber(value) - dayNumber(Date::ymd(parts.year, 1, 1))) + 1;
  if (part == "year") return parts.year;
  if (part == "quarter") return (parts.month - 1) / 3 + 1;
  if (part == "month") return parts.month;
  if (part == "dayofyear") return yearDay;
  if (part == "day") return parts.day;
  if (part == "week") {
    const auto first = static_cast<std::int32_t>(weekdayOf(Date::ymd(parts.year, 1, 1)));
    return (yearDay + first - 1) / 7 + 1;
  }
  if (part == "weekday") return static_cast<std::int32_t>(weekdayOf(value)) + 1;
  if (part == "hour") return parts.hour;
  if (part == "minute") return parts.minute;
  if (part == "second") return parts.second;
  return part == "millisecond" ? parts.microsecond / 1000 : parts.microsecond;
}

std::string dateName(std::string_view part, Date value) {
  const std::int32_t number = datePart(part, value);
  if (part == "month") return std::string(monthName(number));
  if (part == "weekday") return std::string(dayName(number));
  return std::to_string(number);
}

Date dateAdd(std::string_view part, std::int32_t count, Date value, std::int32_t kind) {
  const std::int64_t unit = unitOf(part);
  Date moved;
  if (unit == 0) {
    moved = movedByMonths(value, count * monthsOf(part));
  } else {
    std::int64_t distance = 0, sum = 0;
    if (__builtin_mul_overflow(std::int64_t{count}, unit, &distance) ||
        __builtin_add_overflow(value.microseconds(), distance, &sum))
      raiseOverflow();
    moved = Date::fromMicroseconds(sum);
  }
  try {
    return heldAs(moved, kind);
  } catch (const ValueError&) {
    raiseOverflow();
  }
}

std::int32_t dateDiff(std::string_view part, Date from, Date to) {
  const std::int64_t borders = scaleOf(part, to) - scaleOf(part, from);
  if (borders != static_cast<std::int32_t>(borders))
    throw ValueError(
        "535: The datediff function resulted in an overflow: there are too many borders of the "
        "part between the two dates. Use a less precise part.");
  return static_cast<std::int32_t>(borders);
}

Date endOfMonth(Date value, std::int32_t months) {
  const auto parts = value.parts();
  const Date first = Date::ymd(parts.year, parts.month, 1);
  const Date last = Date::fromMicroseconds(movedByMonths(first, months).microseconds() + 30 * kDay);
  // The 31st day from the first lies in the month, or as many days behind it as it is shorter.
  const auto end = last.parts();
  return end.day >= 28 ? last : Date::fromMicroseconds(last.microseconds() - end.day * kDay);
}

}  // namespace velmora::tsql::values
