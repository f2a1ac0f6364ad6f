#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace velmora::tsql {

/// A name as DuckDB reads it: in double quotes, inner ones doubled.
std::string quoteName(std::string_view name);
/// A text constant in single quotes, inner ones doubled.
std::string quoteText(std::string_view text);
/// How DuckDB SQL names a table of that name: the schema of temporary tables for '#' and '@'
/// names, otherwise the account set's.
std::string engineTableName(std::string_view name);
/// How the engine's table names a column. A column "rowid" would hide the engine's own row
/// numbers, so it stands in brackets there; so does every further name in brackets that
/// would be taken for it.
std::string engineColumnName(std::string_view name);
/// The name of the column that the engine's table names so.
std::string columnNameOf(std::string_view engineName);
/// Whether the engine's table names a column so that its row numbers are hidden.
bool hidesRowNumbers(std::string_view engineName);
/// The name of a column by its place, "c1" for 0, where the query's own names cannot serve.
std::string placeName(std::size_t index);

/// "CAST(sql AS type)".
std::string castSql(std::string_view sql, std::string_view engineTypeName);

/// The parts with `separator` between them.
std::string join(std::span<const std::string> parts, std::string_view separator);

}  // namespace velmora::tsql
