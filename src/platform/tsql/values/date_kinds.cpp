#include "platform/tsql/values/date_kinds.h"

#include <cmath>
#include <limits>
#include <string>

#include "platform/tsql/values/value_error.h"

namespace velmora::tsql::values {
namespace {

using collections::Date;

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kDay = 24 * 60 * kMinute;

std::int64_t floorTo(std::int64_t value, std::int64_t unit) {
  const std::int64_t rest = value % unit;
  return value - (rest < 0 ? rest + unit : rest);
}

/// Three hundredths of a second, in thousandths: .000, .003, .007, .010.
std::int64_t toTicks(std::int64_t value) {
  const std::int64_t second = floorTo(value, kSecond);
  const std::int64_t ticks = ((value - second) * 300 + kSecond / 2) / kSecond;
  return second + (ticks * 10 + 1) / 3 * 1000;
}

std::int64_t toMinutes(std::int64_t value) {
  const std::int64_t minute = floorTo(value, kMinute);
  return value - minute >= 29'999'000 ? minute + kMinute : minute;
}

struct Range {
  Date first, end;
  const char* type;
};

Range rangeOf(DateKind kind) {
  switch (kind) {
    case DateKind::smallDateTime:
      return {Date::ymd(1900, 1, 1), Date::ymd(2079, 6, 7), "smalldatetime"};
    case DateKind::dateTime:
      return {Date::ymd(1753, 1, 1),
              Date::fromMicroseconds(Date::ymd(9999, 12, 31).microseconds() + kDay), "datetime"};
    default:
      return {Date::ymd(1, 1, 1),
              Date::fromMicroseconds(Date::ymd(9999, 12, 31).microseconds() + kDay), "datetime2"};
  }
}

const Date& epoch() {
  static const Date value = Date::ymd(1900, 1, 1);
  return value;
}

[[noreturn]] void raiseOverflow(const char* type) {
  throw ValueError("8115: Arithmetic overflow error converting expression to data type " +
                   std::string(type) + ".");
}

Date moved(Date value, std::int64_t microseconds) {
  const Range range = rangeOf(DateKind::dateTime);
  const Date result = Date::fromMicroseconds(toTicks(value.microseconds() + microseconds));
  if (result < range.first || result >= range.end) raiseOverflow("datetime");
  return result;
}

}  // namespace

Date heldAs(Date value, std::int32_t kind) {
  const auto type = static_cast<DateKind>(kind);
  std::int64_t held = value.microseconds();
  if (type == DateKind::date) held = floorTo(held, kDay);
  if (type == DateKind::smallDateTime) held = toMinutes(held);
  if (type == DateKind::dateTime) held = toTicks(held);
  const Date result = Date::fromMicroseconds(held);
  const Range range = rangeOf(type);
  if (result < range.first || result >= range.end)
    throw ValueError("242: The conversion to a " + std::string(range.type) +
                     " resulted in an out-of-range value.");
  return result;
}

Date dateOfDays(double days, std::int32_t kind) {
  const auto type = static_cast<DateKind>(kind);
  const Range range = rangeOf(type);
  const double limit = 3e6;  // days to the last year, and as many before
  if (!(std::abs(days) < limit)) raiseOverflow(range.type);
  const auto microseconds =
      static_cast<std::int64_t>(std::llround(days * 86400.0 * 300.0)) * kSecond / 300;
  const Date value = Date::fromMicroseconds(epoch().microseconds() + microseconds);
  if (value < range.first || value >= range.end) raiseOverflow(range.type);
  return heldAs(value, kind);
}

double daysOf(Date value) {
  return static_cast<double>(value.microseconds() - epoch().microseconds()) /
         static_cast<double>(kDay);
}

Date sumOfDates(Date a, Date b) {
  return moved(a, b.microseconds() - epoch().microseconds());
}

Date differenceOfDates(Date a, Date b) {
  return moved(a, epoch().microseconds() - b.microseconds());
}

}  // namespace velmora::tsql::values
