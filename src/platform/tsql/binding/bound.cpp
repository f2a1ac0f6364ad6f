#include "platform/tsql/binding/bound.h"

#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/engine_expressions.h"

namespace velmora::tsql {

Bound constantOf(collections::Variant value, const SqlType& type) {
  Bound bound;
  bound.sql = literalSql(value, type);
  bound.type = type;
  bound.nullable = value.isNull();
  bound.constant = std::move(value);
  return bound;
}

Bound computed(std::string sql, const SqlType& type, bool canFail) {
  Bound bound;
  bound.sql = std::move(sql);
  bound.type = type;
  bound.canFail = canFail;
  return bound;
}

bool costsNothingTwice(const Bound& value) {
  constexpr std::size_t shortText = 200;
  return value.constant || value.sql.size() <= shortText;
}

Bound namedOnce(const Bound& value, std::size_t index) {
  Bound named = value;
  named.sql = engine::onceName(index);
  named.constant.reset();
  return named;
}

std::string exactSql(const Bound& value) {
  return value.exact ? value.sql : castSql(value.sql, value.type);
}

}  // namespace velmora::tsql
