#pragma once

#include <string_view>
#include <vector>

#include "platform/ado/filter_criteria.h"

namespace velmora::ado {

/// Reads the criteria of Recordset::Filter for rows of these columns. Raises
/// kAdoInvalidArgument naming what was expected and where, kAdoItemNotFound
/// naming a column that there is not.
FilterCriteria parseFilter(std::string_view criteria, const std::vector<FieldDefinition>& fields);

}  // namespace velmora::ado
