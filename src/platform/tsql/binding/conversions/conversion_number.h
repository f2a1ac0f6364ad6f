#pragma once

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/context.h"

namespace velmora::tsql {

/// A text as a number: '' and blanks are 0 (an error for decimals); a text that is no
/// number of the type is error 245, or 8114 for decimals and floats.
Bound textToNumber(const Bound& value, const SqlType& type);

/// Between numbers: to an integer the fraction is cut, to a decimal it is rounded half
/// away from zero, to a bit anything but 0 is 1. Too large a value is error 8115.
Bound numberToNumber(Context& context, const Bound& value, const SqlType& type);

/// A decimal rounded half away from zero to fewer decimals: `scale` of them.
std::string roundedSql(Context& context, const Bound& value, int scale);

/// The text of a number: decimals with all digits of their scale, money with two.
Bound numberText(const Bound& value);

}  // namespace velmora::tsql
