# Finds the embedded database engine: DUCKDB_ROOT (variable or environment), what
# scripts/setup fetched, then the system. Defines DuckDB::DuckDB.
set(_duckdb_hints ${DUCKDB_ROOT} $ENV{DUCKDB_ROOT} ${PROJECT_SOURCE_DIR}/.deps/duckdb)
find_path(DuckDB_INCLUDE_DIR duckdb.h HINTS ${_duckdb_hints} PATH_SUFFIXES include)
find_library(DuckDB_LIBRARY duckdb HINTS ${_duckdb_hints} PATH_SUFFIXES lib)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(DuckDB
  REQUIRED_VARS DuckDB_LIBRARY DuckDB_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "run scripts/setup, or set DUCKDB_ROOT")
if(DuckDB_FOUND AND NOT TARGET DuckDB::DuckDB)
  add_library(DuckDB::DuckDB SHARED IMPORTED)
  set_target_properties(DuckDB::DuckDB PROPERTIES
    IMPORTED_LOCATION ${DuckDB_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${DuckDB_INCLUDE_DIR})
endif()
mark_as_advanced(DuckDB_INCLUDE_DIR DuckDB_LIBRARY)
