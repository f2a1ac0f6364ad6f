#pragma once

#include <string>
#include <string_view>

#include "platform/tsql/binding/types/sql_type.h"
#include "platform/tsql/engine/sql_text.h"
#include "velmora/collections/variant.h"

namespace velmora::tsql {

/// "CAST(sql AS type)".
std::string castSql(std::string_view sql, const SqlType& type);

/// A constant of exactly the type.
std::string literalSql(const collections::Variant& value, const SqlType& type);

/// A DuckDB expression of the type that raises `error` when it is evaluated.
std::string raiseSql(std::string_view error, const SqlType& type);

}  // namespace velmora::tsql
