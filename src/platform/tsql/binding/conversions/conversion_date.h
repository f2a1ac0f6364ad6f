#pragma once

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/syntax/position.h"

namespace velmora::tsql {

/// A text in a date form (YYYY-MM-DD, YYYY/MM/DD, YYYYMMDD, each with an optional time)
/// as a date; any other text is error 241.
Bound textToDate(const Bound& value, const SqlType& type);

/// Days since 1900-01-01 as a date.
Bound numberToDate(const Bound& value, const SqlType& type);

/// A date as text in one of convert's styles. Refuses a style it does not know.
Bound dateText(const Bound& value, int style, Position position);

}  // namespace velmora::tsql
