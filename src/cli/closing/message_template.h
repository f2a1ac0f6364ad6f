#pragma once

#include <string>
#include <string_view>

#include "velmora/ado/recordset.h"

namespace velmora::cli {

/// The name or severity behind a tagged value of a check item, "0|name"; the items
/// a client runs itself name it in place, never by a column.
std::string taggedText(std::string_view tagged);

/// "template|Column,Column" filled from the current row: "%1" is the first column's
/// text, and so on.
std::string filledMessage(std::string_view messageTemplate, const ado::Recordset& row);

}  // namespace velmora::cli
