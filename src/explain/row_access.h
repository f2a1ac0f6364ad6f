#pragma once

#include <string>

namespace velmora::explain {

/// What holds a query to the rows that the caller's user may see: joins and a condition to be
/// added to it, both empty where he may see all.
struct RowAccess {
  std::string from, condition;

  bool restricts() const { return !condition.empty(); }
};

/// Columns of the table with alias c.
struct AccessColumns {
  const char *department, *employee, *contact, *currency;
};

inline constexpr AccessColumns kDocumentColumns{"FDepartment", "FEmployee", "FCustomer",
                                                "FCurrencyID"};
inline constexpr AccessColumns kInitialColumns{"FDepID", "FEmpID", "FComID", "FCurrencyID"};

/// Asks the suite's services as the user of `callerString`, as the comparison does; an empty
/// string restricts nothing. Raises what they raise.
RowAccess rowAccess(const std::string& callerString, const AccessColumns& columns);

}  // namespace velmora::explain
