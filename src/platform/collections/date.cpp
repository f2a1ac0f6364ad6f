#include "velmora/collections/date.h"

#include <chrono>
#include <ctime>

#include "velmora/com/error.h"

namespace velmora::collections {

namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = 86'400 * kSecond;

constexpr std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

std::optional<Date> tryFromParts(const Date::Parts& p) {
  const auto within = [](int value, int low, int high) { return value >= low && value <= high; };
  if (!within(p.year, 1, 9999) || !within(p.month, 1, 12) || !within(p.day, 1, 31)) return {};
  const std::chrono::year_month_day day{std::chrono::year(p.year),
                                        std::chrono::month(static_cast<unsigned>(p.month)),
                                        std::chrono::day(static_cast<unsigned>(p.day))};
  if (!day.ok() || !within(p.hour, 0, 23) || !within(p.minute, 0, 59) || !within(p.second, 0, 59) ||
      !within(p.microsecond, 0, kSecond - 1))
    return {};
  const std::int64_t days = std::chrono::sys_days(day).time_since_epoch().count();
  const std::int64_t seconds = (p.hour * 60 + p.minute) * 60 + p.second;
  return Date::fromMicroseconds(days * kDay + seconds * kSecond + p.microsecond);
}

std::string padded(int value, std::size_t width) {
  std::string digits = std::to_string(value);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

/// Takes fixed-width fields off the front of a text.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }
  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool takeNumber(std::size_t width, int& value) {
    const auto digits = takeDigits(width);
    if (digits.size() != width) return false;
    value = 0;
    for (const char c : digits) value = value * 10 + (c - '0');
    return true;
  }
  std::string_view takeDigits(std::size_t most) {
    std::size_t count = 0;
    while (count < most && count < rest_.size() && rest_[count] >= '0' && rest_[count] <= '9')
      ++count;
    const auto digits = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return digits;
  }

 private:
  std::string_view rest_;
};

bool takeDay(FieldReader& reader, Date::Parts& parts) {
  if (!reader.takeNumber(4, parts.year)) return false;
  const char separator = reader.take('-') ? '-' : (reader.take('/') ? '/' : '\0');
  if (!reader.takeNumber(2, parts.month)) return false;
  if (separator != '\0' && !reader.take(separator)) return false;
  return reader.takeNumber(2, parts.day);
}

bool takeFraction(FieldReader& reader, int& microsecond) {
  constexpr std::size_t kMostDigits = 9;
  const auto digits = reader.takeDigits(kMostDigits);
  if (digits.empty()) return false;
  for (std::size_t i = 0; i < 6; ++i)
    microsecond = microsecond * 10 + (i < digits.size() ? digits[i] - '0' : 0);
  return true;
}

bool takeTime(FieldReader& reader, Date::Parts& parts) {
  if (!reader.takeNumber(2, parts.hour) || !reader.take(':') || !reader.takeNumber(2, parts.minute))
    return false;
  if (!reader.take(':')) return true;
  if (!reader.takeNumber(2, parts.second)) return false;
  return !reader.take('.') || takeFraction(reader, parts.microsecond);
}

}  // namespace

Date Date::fromParts(const Parts& p) {
  if (const auto date = tryFromParts(p)) return *date;
  throw com::Error(com::error::kInvalidArgument, "Velmora.Date",
                   "there is no date " + padded(p.year, 4) + "-" + padded(p.month, 2) + "-" +
                       padded(p.day, 2) + " " + padded(p.hour, 2) + ":" + padded(p.minute, 2) +
                       ":" + padded(p.second, 2) + "." + padded(p.microsecond, 6));
}

std::optional<Date> Date::tryParse(std::string_view text) {
  FieldReader reader(text);
  Parts parts;
  if (!takeDay(reader, parts)) return {};
  if ((reader.take(' ') || reader.take('T')) && !takeTime(reader, parts)) return {};
  return reader.atEnd() ? tryFromParts(parts) : std::nullopt;
}

Date Date::today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return ymd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

Date::Parts Date::parts() const {
  const std::int64_t days = floorDivide(microseconds_, kDay);
  const std::chrono::year_month_day day{std::chrono::sys_days(std::chrono::days(days))};
  const std::int64_t time = microseconds_ - days * kDay;
  const int seconds = static_cast<int>(time / kSecond);
  Parts parts;
  parts.year = static_cast<int>(day.year());
  parts.month = static_cast<int>(static_cast<unsigned>(day.month()));
  parts.day = static_cast<int>(static_cast<unsigned>(day.day()));
  parts.hour = seconds / 3600;
  parts.minute = seconds / 60 % 60;
  parts.second = seconds % 60;
  parts.microsecond = static_cast<int>(time % kSecond);
  return parts;
}

bool Date::hasTime() const {
  return microseconds_ % kDay != 0;
}

std::string Date::toDateText() const {
  const Parts p = parts();
  return padded(p.year, 4) + "-" + padded(p.month, 2) + "-" + padded(p.day, 2);
}

std::string Date::toString() const {
  std::string text = toDateText();
  if (!hasTime()) return text;
  const Parts p = parts();
  text += " " + padded(p.hour, 2) + ":" + padded(p.minute, 2) + ":" + padded(p.second, 2);
  if (p.microsecond == 0) return text;
  text += "." + padded(p.microsecond, 6);
  return text.erase(text.find_last_not_of('0') + 1);
}

}  // namespace velmora::collections
