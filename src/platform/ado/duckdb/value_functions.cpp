#include "platform/ado/duckdb/value_functions.h"

#include "platform/ado/duckdb/scalar_adapter.h"
#include "platform/tsql/values/arithmetic.h"
#include "platform/tsql/values/number_text.h"
#include "platform/tsql/values/text_number.h"

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

namespace values = tsql::values;

constexpr std::array kFunctions{
    named<values::quotient>("velmora_quotient"),
    named<values::remainder>("velmora_remainder"),
    named<values::ratio>("velmora_ratio"),
    named<values::finite>("velmora_finite"),
    named<values::finiteReal>("velmora_finite_real"),
    named<values::wholeNumber>("velmora_whole_number"),
    named<values::bitNumber>("velmora_bit_number"),
    named<values::floatNumber>("velmora_float_number"),
    named<values::decimalDigits>("velmora_decimal_digits"),
    named<values::moneyDigits>("velmora_money_digits"),
    named<values::integerText>("velmora_integer_text"),
    named<values::floatText>("velmora_float_text"),
    named<values::moneyText>("velmora_money_text"),
    named<values::withLeadingZero>("velmora_leading_zero"),
    named<values::roomFor>("velmora_room_for"),
};

}  // namespace

void makeValueFunctionsKnown(duckdb_database database) {
  const Session session(database);
  for (const auto& function : kFunctions) function.makeKnown(session.handle(), function.name);
}

}  // namespace velmora::ado::embedded
