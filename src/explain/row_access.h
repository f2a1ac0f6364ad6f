#pragma once

#include <string>

#include "common/access_requests.h"

namespace velmora::explain {

/// What holds a query to the rows that the caller's user may see: joins and a condition to be
/// added to it, both empty where he may see all.
struct RowAccess {
  std::string from, condition;

  bool restricts() const { return !condition.empty(); }
};

/// Of tables with alias c.
inline constexpr DimensionColumns kDocumentColumns{"c", "FDepartment", "FEmployee", "FCustomer",
                                                   "FCurrencyID"};
inline constexpr DimensionColumns kInitialColumns{"c", "FDepID", "FEmpID", "FComID", "FCurrencyID"};

/// Asks the suite's services as the user of `callerString`, as the comparison does; an empty
/// string restricts nothing. Raises what they raise.
RowAccess rowAccess(const std::string& callerString, const DimensionColumns& columns);

}  // namespace velmora::explain
