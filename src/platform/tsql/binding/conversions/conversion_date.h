#pragma once

#include <optional>

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/syntax/position.h"

namespace velmora::tsql {

/// The number by which functions of dates know the type (values/date_kinds.h).
int dateKind(const SqlType& type);

/// A text as a date; see values/text_date.h.
Bound textToDate(const Bound& value, const SqlType& type, int style);

/// Between the types of dates: rounded to what the type holds; error 242 beyond its range.
Bound dateToDate(const Bound& value, const SqlType& type);

/// Days since 1900-01-01 as a datetime or smalldatetime, and back, to an integer rounded. The
/// other types of dates are no numbers: error 206.
Bound numberToDate(const Bound& value, const SqlType& type, Position position);
Bound dateToNumber(const Bound& value, const SqlType& type, Position position);

/// A date as a text in one of convert's styles, by default that of a cast.
Bound dateText(const Bound& value, std::optional<int> style);

}  // namespace velmora::tsql
