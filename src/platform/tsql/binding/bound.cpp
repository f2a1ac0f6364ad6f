#include "platform/tsql/binding/bound.h"

#include "platform/tsql/binding/types/typed_sql.h"
#include "platform/tsql/engine/sql_text.h"

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

std::string exactSql(const Bound& value) {
  return value.exact ? value.sql : castSql(value.sql, value.type);
}

}  // namespace velmora::tsql
