#include "platform/tsql/binding/conversions/conversion_date.h"

#include <algorithm>
#include <array>

#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql {
namespace {

using collections::Date;

struct Style {
  int number;
  std::string_view format;  // of strftime
};

constexpr std::array kStyles = std::to_array<Style>({
    {20, "%Y-%m-%d %H:%M:%S"},
    {21, "%Y-%m-%d %H:%M:%S.%g"},
    {23, "%Y-%m-%d"},
    {101, "%m/%d/%Y"},
    {102, "%Y.%m.%d"},
    {103, "%d/%m/%Y"},
    {104, "%d.%m.%Y"},
    {105, "%d-%m-%Y"},
    {108, "%H:%M:%S"},
    {110, "%m-%d-%Y"},
    {111, "%Y/%m/%d"},
    {112, "%Y%m%d"},
    {120, "%Y-%m-%d %H:%M:%S"},
    {121, "%Y-%m-%d %H:%M:%S.%g"},
    {126, "%Y-%m-%dT%H:%M:%S.%g"},
});

/// "Mar  5 2009 10:20AM", the form without a style: day and hour take two places.
std::string defaultText(const std::string& date) {
  return "(strftime(" + date + ", '%b ') || lpad(CAST(day(" + date +
         ") AS VARCHAR), 2, ' ') || strftime(" + date + ", ' %Y ') || lpad(strftime(" + date +
         ", '%-I'), 2, ' ') || strftime(" + date + ", ':%M%p'))";
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// "2009/3/5 10:20" with two digits for month and day, as the reader of dates wants it.
std::string paddedDay(std::string_view text) {
  std::string result;
  const std::size_t dayEnd = std::min(text.find_first_of(" T"), text.size());
  for (std::size_t at = 0; at < dayEnd;) {
    const std::size_t end = std::min(text.find_first_of("-/", at), dayEnd);
    if (end - at == 1) result += '0';
    result += text.substr(at, end - at);
    if (end < dayEnd) result += text[end];
    at = end + 1;
  }
  return result.append(text.substr(dayEnd));
}

std::string twoDigits(int value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

/// What strftime makes of a constant.
std::string formatted(const Date& date, std::string_view format) {
  const Date::Parts parts = date.parts();
  std::string text;
  for (std::size_t at = 0; at < format.size(); ++at) {
    if (format[at] != '%') {
      text += format[at];
      continue;
    }
    switch (format[++at]) {
      case 'Y':
        text += std::to_string(parts.year);
        break;
      case 'm':
        text += twoDigits(parts.month);
        break;
      case 'd':
        text += twoDigits(parts.day);
        break;
      case 'H':
        text += twoDigits(parts.hour);
        break;
      case 'M':
        text += twoDigits(parts.minute);
        break;
      case 'S':
        text += twoDigits(parts.second);
        break;
      default:
        text += std::to_string(1000 + parts.microsecond / 1000).substr(1);
        break;
    }
  }
  return text;
}

/// The date and time of a text in one of the forms that compare with dates; '' is
/// 1900-01-01.
std::optional<Date> dateOf(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  if (text.empty()) return Date::ymd(1900, 1, 1);
  if (text.size() == 4 && isDigits(text)) return std::nullopt;
  return Date::tryParse(paddedDay(text));
}

}  // namespace

Bound textToDate(const Bound& value, const SqlType& type) {
  if (!value.constant) {
    return computed(castSql(engine::textToDateTime(value.sql), type), type, true);
  }
  const std::string_view text = value.constant->text();
  if (const auto date = dateOf(text)) return constantOf(*date, type);
  return computed(raiseSql("241: Conversion failed when converting date and/or time from "
                           "character string '" +
                               std::string(text) + "'.",
                           type),
                  type, true);
}

Bound numberToDate(const Bound& value, const SqlType& type) {
  const std::string days = castSql(value.sql, "DOUBLE") + " * 86400000000";
  return computed(castSql("(TIMESTAMP '1900-01-01' + to_microseconds(" +
                              castSql("round(" + days + ")", "BIGINT") + "))",
                          type),
                  type, value.canFail);
}

Bound dateText(const Bound& value, int style, Position position) {
  if (value.type.kind == SqlKind::date && style == 0) style = 23;
  if (style == 0 || style == 100) {
    return computed(defaultText(value.sql), SqlType::varchar(19), value.canFail);
  }
  const auto* found = std::ranges::find(kStyles, style, &Style::number);
  if (found == kStyles.end()) refuse(position, "date style " + std::to_string(style));
  const SqlType type = SqlType::varchar(23);
  if (value.constant && value.constant->toDate() >= Date::ymd(1000, 1, 1)) {
    const std::string text = formatted(value.constant->toDate(), found->format);
    return constantOf(text, SqlType::varchar(static_cast<std::int64_t>(text.size())));
  }
  return computed("strftime(" + value.sql + ", " + quoteText(found->format) + ")", type,
                  value.canFail);
}

}  // namespace velmora::tsql
