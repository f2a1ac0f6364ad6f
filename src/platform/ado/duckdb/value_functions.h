#pragma once

#include <duckdb.h>

namespace velmora::ado::embedded {

/// Makes the functions of platform/tsql/values known to the engine, each under the name that
/// translated statements call it by.
void makeValueFunctionsKnown(duckdb_database database);

}  // namespace velmora::ado::embedded
