#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/tsql/binding/bound.h"
#include "platform/tsql/binding/context.h"
#include "platform/tsql/syntax/position.h"

namespace velmora::tsql {

/// `value` as a value of `type`, as where types meet (comparison, CASE, UNION). Texts
/// that are no number or date raise when a row reaches them. Refuses conversions that
/// T-SQL does not make by itself, naming both types.
Bound convertTo(Context& context, const Bound& value, const SqlType& type, Position position);

/// cast and convert: texts are cut to the length; `style` is that of dates as text.
Bound castTo(Context& context, const Bound& value, const SqlType& type, Position position,
             std::optional<int> style = std::nullopt);

/// A value for a column: too long a text and too large a number are errors that name
/// the column.
Bound assignTo(Context& context, const Bound& value, const SqlType& type, std::string_view column,
               Position position);

}  // namespace velmora::tsql
