#pragma once

#include <string>
#include <string_view>

#include "velmora/ado/recordset.h"

namespace velmora::closing {

/// The value of a tagged value "flag|value": the text itself with flag 0, else the text
/// of the column it names in the current row of `rows`. Raises kAdoItemNotFound for a
/// column that is missing, kInvalidUseOfNull naming one that is Null.
std::string taggedValue(std::string_view tagged, ado::Recordset& rows);

/// The message "template|column,column,..." for the current row of `rows`: "%1", "%2"
/// ... replaced one after the other by the columns' texts. Raises as taggedValue.
std::string filledMessage(std::string_view message, ado::Recordset& rows);

}  // namespace velmora::closing
