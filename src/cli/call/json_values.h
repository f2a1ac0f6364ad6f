#pragma once

#include "cli/call/json_text.h"
#include "velmora/collections/variant.h"

namespace velmora::cli {

/// The value that `json` stands for: true/false Boolean, text String, integers
/// Int32 (Int64 beyond), numbers with a point or exponent Double,
/// {"$decimal":"12.50"} Decimal, {"$date":"2009-03-01T10:20:30"} Date,
/// {"$recordset":...} Recordset, other objects Dictionary, arrays Vector, null Null.
/// Raises JsonError naming the place below `json`.
collections::Variant valueFromJson(const Json& json);

/// The same the other way round; Empty and "nothing" are null. Passwords of
/// connection strings among a dictionary's texts are masked. Raises JsonError for
/// objects of other classes and for objects nested without end.
Json jsonFromValue(const collections::Variant& value);

}  // namespace velmora::cli
