#include "platform/tsql/conversion_date.h"

#include <algorithm>
#include <array>

#include "platform/tsql/conversion.h"
#include "platform/tsql/errors.h"
#include "platform/tsql/sql_text.h"

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

}  // namespace

std::optional<Date> dateOf(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  if (text.empty()) return Date::ymd(1900, 1, 1);
  if (text.size() == 4 && isDigits(text)) return std::nullopt;
  return Date::tryParse(text);
}

Bound textToDate(const Bound& value, const SqlType& type) {
  if (!value.constant) {
    return computed(castSql("velmora_text_to_datetime(" + value.sql + ")", type), type, true);
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
  return computed("strftime(" + value.sql + ", " + quoteText(found->format) + ")",
                  SqlType::varchar(23), value.canFail);
}

}  // namespace velmora::tsql
