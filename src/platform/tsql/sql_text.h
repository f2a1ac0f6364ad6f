#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/tsql/sql_type.h"
#include "velmora/collections/variant.h"

namespace velmora::tsql {

/// A name as DuckDB reads it: in double quotes, inner ones doubled.
std::string quoteName(std::string_view name);
/// A text constant in single quotes, inner ones doubled.
std::string quoteText(std::string_view text);
/// How DuckDB SQL names a table of that name: the schema of temporary tables for '#'
/// names, otherwise the account set's.
std::string engineTableName(std::string_view name);

/// Names are the same without regard to case.
bool sameName(std::string_view a, std::string_view b) noexcept;

/// "CAST(sql AS type)".
std::string castSql(std::string_view sql, const SqlType& type);
std::string castSql(std::string_view sql, std::string_view engineTypeName);

/// A constant of exactly the type.
std::string literalSql(const collections::Variant& value, const SqlType& type);

/// The parts with `separator` between them.
std::string join(std::span<const std::string> parts, std::string_view separator);

}  // namespace velmora::tsql
