#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::collections {

/// A calendar date and time without a zone, in microseconds since 1970-01-01.
class Date {
 public:
  struct Parts {
    int year = 1970, month = 1, day = 1;
    int hour = 0, minute = 0, second = 0, microsecond = 0;
  };

  constexpr Date() = default;
  constexpr static Date fromMicroseconds(std::int64_t value) {
    Date date;
    date.microseconds_ = value;
    return date;
  }
  /// Throws com::Error kInvalidArgument naming the parts when there is no such day or time.
  static Date fromParts(const Parts& parts);
  static Date ymd(int year, int month, int day) { return fromParts({year, month, day}); }
  /// YYYY-MM-DD, YYYY/MM/DD or YYYYMMDD, then optionally a blank or "T" and
  /// HH:MM[:SS[.fraction]]. nullopt for anything else.
  static std::optional<Date> tryParse(std::string_view text);
  /// Today at midnight, local time of this machine.
  static Date today();

  constexpr std::int64_t microseconds() const { return microseconds_; }
  Parts parts() const;
  bool hasTime() const;

  /// "YYYY-MM-DD".
  std::string toDateText() const;
  /// "YYYY-MM-DD", with " HH:MM:SS" when there is a time of day and
  /// ".ffffff" (trailing zeros cut) when there is a fraction of a second.
  std::string toString() const;

  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in <=>
  friend constexpr auto operator<=>(const Date&, const Date&) = default;

 private:
  std::int64_t microseconds_ = 0;
};

}  // namespace velmora::collections
