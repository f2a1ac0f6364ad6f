#pragma once

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/context.h"

namespace velmora::tsql {

/// A text as a number; see values/text_number.h.
Bound textToNumber(Context& context, const Bound& value, const SqlType& type);

/// Between numbers: to an integer the fraction is cut (that of money rounded), to a decimal it
/// is rounded half away from zero, to a bit anything but 0 is 1. Too large a value is error 8115.
Bound numberToNumber(Context& context, const Bound& value, const SqlType& type);

/// A decimal rounded half away from zero to fewer decimals: `scale` of them.
std::string roundedSql(Context& context, const Bound& value, int scale);

/// A decimal as money or smallmoney; beyond the type's range error 8115.
Bound inMoneyRange(Context& context, const Bound& value, const SqlType& type);

/// The text of a number for a text type: decimals with all digits of their scale, money and
/// floats by the style; see values/number_text.h. Where it does not fit, an int or a smaller
/// one becomes "*" (in char and varchar), all others are error 8115.
Bound numberToText(const Bound& value, const SqlType& type, int style);

}  // namespace velmora::tsql
