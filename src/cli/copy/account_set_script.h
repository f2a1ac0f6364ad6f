#pragma once

#include <ostream>

#include "cli/copy/account_set_copy.h"

namespace velmora::cli {

/// Writes the account set as a T-SQL script with GO lines, in UTF-8, that makes its tables
/// and enters their rows in an empty database. The same account set gives the same script.
/// What counts as the account set, and what is raised, is as for copyAccountSet. Returns the
/// tables written, no sums compared.
std::vector<CopiedTable> writeScript(ado::Connection& source, std::ostream& out,
                                     const CopyOptions& options);

}  // namespace velmora::cli
