#include "platform/tsql/engine/engine_expressions.h"

#include <initializer_list>

#include "platform/tsql/engine/engine_functions.h"
#include "platform/tsql/engine/sql_text.h"

namespace velmora::tsql::engine {
namespace {

/// `form` with its places $1, $2, ... filled.
std::string filled(std::string_view form, std::initializer_list<std::string_view> arguments) {
  std::string sql = "(";
  for (std::size_t at = 0; at < form.size(); ++at) {
    if (form[at] == '$') {
      sql += arguments.begin()[form[++at] - '1'];
    } else {
      sql += form[at];
    }
  }
  return sql += ")";
}

}  // namespace

std::string quotient(std::string_view a, std::string_view b) {
  return filled("velmora_quotient($1, $2)", {a, b});
}
std::string remainder(std::string_view a, std::string_view b) {
  return filled("velmora_remainder($1, $2)", {a, b});
}
std::string ratio(std::string_view a, std::string_view b) {
  return filled("velmora_ratio($1, $2)", {a, b});
}
std::string finite(std::string_view value, bool real) {
  return filled(real ? "velmora_finite_real($1)" : "velmora_finite($1)", {value});
}

std::string tryTextToDateTime(std::string_view text) {
  return filled(
      "try_strptime(trim($1), ['%Y-%m-%d', '%Y/%m/%d', '%Y%m%d', '%Y-%m-%d %H:%M',"
      " '%Y/%m/%d %H:%M', '%Y%m%d %H:%M', '%Y-%m-%d %H:%M:%S', '%Y/%m/%d %H:%M:%S',"
      " '%Y%m%d %H:%M:%S', '%Y-%m-%d %H:%M:%S.%f', '%Y/%m/%d %H:%M:%S.%f',"
      " '%Y%m%d %H:%M:%S.%f', '%Y-%m-%dT%H:%M:%S', '%Y-%m-%dT%H:%M:%S.%f'])",
      {text});
}

std::string textToDateTime(std::string_view text) {
  return filled(
      "CASE WHEN trim($1) = '' THEN TIMESTAMP '1900-01-01' WHEN $2 IS NOT NULL THEN $2"
      " WHEN $1 IS NOT NULL THEN error('241: Conversion failed when converting date and/or time"
      " from character string ''' || $1 || '''.') END",
      {text, tryTextToDateTime(text)});
}

std::string weeksBetween(std::string_view from, std::string_view to) {
  // The engine's week begins on Monday.
  return filled(
      "date_diff('day', date_trunc('week', CAST($1 AS TIMESTAMP) + to_days(1)),"
      " date_trunc('week', CAST($2 AS TIMESTAMP) + to_days(1))) // 7",
      {from, to});
}

std::string now() {
  return "current_localtimestamp()";
}

}  // namespace velmora::tsql::engine
