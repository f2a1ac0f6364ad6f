#pragma once

#include <cstdint>
#include <string_view>

#include "velmora/collections/date.h"

namespace velmora::tsql::values {

/// The date and time that a text says, as a value of the type `kind` (DateKind): days as
/// 2009-03-05, 2009/3/5, 03/05/2009, 20090305, 090305, 2009, Mar 5 2009 or 5 March 2009, times
/// as 10:20[:30[.123]] [AM|PM] or 10PM, one of them or both; 2009-03-05T10:20:30; blanks alone
/// are 1900-01-01. Of years with two digits 49 is 2049, 50 is 1950. `style` is that of CONVERT:
/// it says in which order three numbers are day, month and year; 0: month, day, year.
/// Error 241 (295 for smalldatetime) for any other text, 242 for a day that there is not or that
/// the type has no room for.
collections::Date dateOfText(std::string_view text, std::int32_t style, std::int32_t kind);

/// 1 where dateOfText reads the text as a datetime, else 0.
std::int32_t isDate(std::string_view text);

}  // namespace velmora::tsql::values
