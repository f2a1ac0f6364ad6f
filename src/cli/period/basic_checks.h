#pragma once

#include <string>

#include "cli/period/report.h"

namespace velmora::cli {

/// Checks whether the initialisation of one side may be ended. `language` is that of the
/// findings. Raises Failure telling why the check could not run.
CheckReport runInitCheck(const std::string& dsn, bool receivables, const std::string& language);

/// Checks the accounts of customers, suppliers and other items; as runInitCheck.
CheckReport runAccountCheck(const std::string& dsn, const std::string& language);

}  // namespace velmora::cli
