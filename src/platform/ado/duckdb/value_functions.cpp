#include "platform/ado/duckdb/value_functions.h"

#include "platform/ado/duckdb/scalar_adapter.h"
#include "platform/tsql/values/whole_numbers.h"

namespace velmora::ado::embedded {
namespace {

struct ValueFunction {
  const char* name;
  void (*makeKnown)(duckdb_connection, const char*);
};

template <auto Function>
constexpr ValueFunction named(const char* name) {
  return {name, ScalarAdapter<Function>::makeKnown};
}

constexpr std::array kFunctions{
    named<tsql::values::wholeNumber>("velmora_whole_number"),
};

}  // namespace

void makeValueFunctionsKnown(duckdb_database database) {
  const Session session(database);
  for (const auto& function : kFunctions) function.makeKnown(session.handle(), function.name);
}

}  // namespace velmora::ado::embedded
