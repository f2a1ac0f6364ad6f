#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "platform/ado/duckdb/engine.h"
#include "platform/tsql/binding/types/sql_type.h"
#include "velmora/collections/variant.h"

namespace velmora::ado::embedded {

using collections::Variant;

/// All rows of a result as cells, row after row, column n as a recordset shows `types[n]`.
/// Raises when the engine's columns are not those of `types`.
std::vector<Variant> readCells(Result& result, std::span<const tsql::SqlType> types);

/// The rows of a query of the provider's own, all of whose `columns` are texts (or NULL).
std::vector<std::vector<Variant>> readTexts(Session& session, const std::string& sql,
                                            std::size_t columns);

}  // namespace velmora::ado::embedded
