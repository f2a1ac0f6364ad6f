#include "platform/ado/duckdb/value_functions.h"

#include "platform/ado/duckdb/scalar_adapter.h"
#include "platform/tsql/values/arithmetic.h"
#include "platform/tsql/values/date_kinds.h"
#include "platform/tsql/values/date_parts.h"
#include "platform/tsql/values/date_text.h"
#include "platform/tsql/values/like.h"
#include "platform/tsql/values/number_text.h"
#include "platform/tsql/values/text.h"
#include "platform/tsql/values/text_date.h"
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
    named<values::squareRoot>("velmora_square_root"),
    named<values::square>("velmora_square"),
    named<values::exponential>("velmora_exponential"),
    named<values::logarithm>("velmora_logarithm"),
    named<values::decimalLogarithm>("velmora_decimal_logarithm"),
    named<values::power>("velmora_power"),
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
    named<values::heldAs>("velmora_held_as"),
    named<values::dateOfDays>("velmora_date_of_days"),
    named<values::daysOf>("velmora_days_of"),
    named<values::sumOfDates>("velmora_sum_of_dates"),
    named<values::differenceOfDates>("velmora_difference_of_dates"),
    named<values::dateOfText>("velmora_date_of_text"),
    named<values::isDate>("velmora_is_date"),
    named<values::dateText>("velmora_date_text"),
    named<values::longDateText>("velmora_long_date_text"),
    named<values::datePart>("velmora_date_part"),
    named<values::dateName>("velmora_date_name"),
    named<values::dateAdd>("velmora_date_add"),
    named<values::dateDiff>("velmora_date_diff"),
    named<values::endOfMonth>("velmora_end_of_month"),
    named<values::matchesPattern>("velmora_like"),
    named<values::patternPlace>("velmora_pattern_place"),
    named<values::substring>("velmora_substring"),
    named<values::leftPart>("velmora_left"),
    named<values::rightPart>("velmora_right"),
    named<values::placeOf>("velmora_place"),
    named<values::replaced>("velmora_replaced"),
    named<values::stuffed>("velmora_stuffed"),
    named<values::reversed>("velmora_reversed"),
    named<values::repeated>("velmora_repeated"),
    named<values::asciiCode>("velmora_ascii"),
    named<values::unicodeCode>("velmora_unicode"),
    named<values::asciiCharacter>("velmora_char"),
    named<values::unicodeCharacter>("velmora_nchar"),
    named<values::numberText>("velmora_str"),
    named<values::isNumeric>("velmora_is_numeric"),
    named<values::narrowBytes>("velmora_narrow_bytes"),
    named<values::wideBytes>("velmora_wide_bytes"),
    named<values::narrowStart>("velmora_narrow_start"),
    named<values::narrowPadded>("velmora_narrow_padded"),
    named<values::fitted>("velmora_fitted"),
    named<values::identifierText>("velmora_identifier"),
};

}  // namespace

void makeValueFunctionsKnown(duckdb_database database) {
  const Session session(database);
  for (const auto& function : kFunctions) function.makeKnown(session.handle(), function.name);
}

}  // namespace velmora::ado::embedded
