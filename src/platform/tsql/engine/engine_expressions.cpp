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

std::string once(std::span<const std::string> values, std::string_view body) {
  std::string sql = "list_transform([struct_pack(";
  for (std::size_t i = 0; i < values.size(); ++i) {
    sql += (i > 0 ? ", v" : "v") + std::to_string(i) + " := " + values[i];
  }
  return sql.append(")], lambda velmora_once: ").append(body).append(")[1]");
}

std::string onceName(std::size_t index) {
  return "velmora_once.v" + std::to_string(index);
}

}  // namespace velmora::tsql::engine
