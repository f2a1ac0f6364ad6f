#include "platform/tsql/values/date_text.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "platform/tsql/values/value_error.h"

namespace velmora::tsql::values {
namespace {

using collections::Date;

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kDays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                "Thursday", "Friday", "Saturday"};

/// What a style says of the day and of the time. Y year, y its last two digits, m month, b its
/// name, d day, D day without zero; H hour, h of twelve, i minute, s second, f thousandths, F
/// the same with a point where there are any, p AM or PM. All else stands for itself.
struct Style {
  std::int32_t number;
  std::string_view day;
  std::string_view time;
};

constexpr auto kStyles = std::to_array<Style>({
    {0, "b D Y", " h:ip"},
    {1, "m/d/y", ""},
    {2, "y.m.d", ""},
    {3, "d/m/y", ""},
    {4, "d.m.y", ""},
    {5, "d-m-y", ""},
    {6, "d b y", ""},
    {7, "b d, y", ""},
    {8, "", "H:i:s"},
    {9, "b D Y", " h:i:s:fp"},
    {10, "m-d-y", ""},
    {11, "y/m/d", ""},
    {12, "ymd", ""},
    {13, "d b Y", " H:i:s:f"},
    {14, "", "H:i:s:f"},
    {20, "Y-m-d", " H:i:s"},
    {21, "Y-m-d", " H:i:s.f"},
    {22, "m/d/y", " h:i:s p"},
    {23, "Y-m-d", ""},
    {24, "", "H:i:s"},
    {25, "Y-m-d", " H:i:s.f"},
    {100, "b D Y", " h:ip"},
    {101, "m/d/Y", ""},
    {102, "Y.m.d", ""},
    {103, "d/m/Y", ""},
    {104, "d.m.Y", ""},
    {105, "d-m-Y", ""},
    {106, "d b Y", ""},
    {107, "b d, Y", ""},
    {108, "", "H:i:s"},
    {109, "b D Y", " h:i:s:fp"},
    {110, "m-d-Y", ""},
    {111, "Y/m/d", ""},
    {112, "Ymd", ""},
    {113, "d b Y", " H:i:s:f"},
    {114, "", "H:i:s:f"},
    {120, "Y-m-d", " H:i:s"},
    {121, "Y-m-d", " H:i:s.f"},
    {126, "Y-m-d", "TH:i:sF"},
    {127, "Y-m-d", "TH:i:sF"},
});

int twelfths(int hour) {
  return hour % 12 == 0 ? 12 : hour % 12;
}

void append(std::string& text, char code, const Date::Parts& parts) {
  auto out = std::back_inserter(text);
  const int thousandths = parts.microsecond / 1000;
  switch (code) {
    case 'Y':
      fmt::format_to(out, "{:04}", parts.year);
      break;
    case 'y':
      fmt::format_to(out, "{:02}", parts.year % 100);
      break;
    case 'm':
      fmt::format_to(out, "{:02}", parts.month);
      break;
    case 'b':
      text += monthName(parts.month).substr(0, 3);
      break;
    case 'd':
      fmt::format_to(out, "{:02}", parts.day);
      break;
    case 'D':
      fmt::format_to(out, "{:2}", parts.day);
      break;
    case 'H':
      fmt::format_to(out, "{:02}", parts.hour);
      break;
    case 'h':
      fmt::format_to(out, "{:2}", twelfths(parts.hour));
      break;
    case 'i':
      fmt::format_to(out, "{:02}", parts.minute);
      break;
    case 's':
      fmt::format_to(out, "{:02}", parts.second);
      break;
    case 'f':
      fmt::format_to(out, "{:03}", thousandths);
      break;
    case 'F':
      if (thousandths != 0) fmt::format_to(out, ".{:03}", thousandths);
      break;
    case 'p':
      text += parts.hour < 12 ? "AM" : "PM";
      break;
    default:
      text += code;
  }
}

}  // namespace

std::string_view monthName(int month) {
  return kMonths[static_cast<std::size_t>(month - 1)];
}

std::string_view dayName(int weekday) {
  return kDays[static_cast<std::size_t>(weekday - 1)];
}

std::string dateText(Date value, std::int32_t style, bool withoutTime) {
  const auto* const found = std::ranges::find(kStyles, style, &Style::number);
  if (found == kStyles.end() || (withoutTime && found->day.empty()))
    throw ValueError(
        fmt::format("281: {} is not a valid style number when converting from {} to a "
                    "character string.",
                    style, withoutTime ? "date" : "datetime"));
  const Date::Parts parts = value.parts();
  std::string text;
  for (const char code : found->day) append(text, code, parts);
  if (withoutTime) return text;
  for (const char code : found->time) append(text, code, parts);
  return text;
}

std::string longDateText(Date value) {
  return fmt::format("{}.{:06}0", dateText(value, 20, false), value.parts().microsecond);
}

}  // namespace velmora::tsql::values
