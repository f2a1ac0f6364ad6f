#include "platform/tsql/binding/accumulation.h"

#include "platform/tsql/engine/sql_text.h"
#include "platform/tsql/syntax/text_scan.h"

namespace velmora::tsql {

Bound Accumulation::input(const Bound& value, Position position) {
  if (value.constant) return value;
  Bound read = value;
  if (read.type.kind == SqlKind::untypedNull) read.type = SqlType::integer();
  inputs.push_back({"", read, position});
  read.sql = "x." + placeName(inputs.size() - 1);
  read.exact = true;
  read.canFail = false;
  return read;
}

std::string Accumulation::variableSql(std::string_view name) {
  return "s." + quoteName(lowered(name));
}

}  // namespace velmora::tsql
