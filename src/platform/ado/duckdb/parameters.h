#pragma once

#include <span>
#include <vector>

#include "platform/tsql/translate.h"
#include "velmora/ado/provider.h"

namespace velmora::ado::embedded {

/// The parameters as typed values of T-SQL. A decimal keeps every digit it has, whatever
/// its declared scale. Raises kAdoDataConversion naming the parameter for a value that is
/// none of its type or a text longer than its size.
std::vector<tsql::Variable> toVariables(std::span<const ParameterValue> parameters);

}  // namespace velmora::ado::embedded
