#pragma once

#include <CLI/CLI.hpp>
#include <iosfwd>
#include <optional>
#include <string>

#include "cli/session.h"

namespace velmora::cli {

/// --user ID and --no-row-access, of the commands that apply row access.
void addRowAccessOptions(CLI::App& command, AccountSetOptions& options, bool& noRowAccess);

/// Why the component could not decide which rows the user may see and answered with those of
/// all users; nothing when it could. Read from what the operation before left as the thread's
/// error information.
std::optional<std::string> undecidedRowAccess();

/// Raises Failure with that reason and what can be done about it.
void requireRowAccess();

/// What --no-row-access tells on standard error: whether it was needed, and why.
std::string noRowAccessNote();

/// One or the other, as `noRowAccess` asks.
void settleRowAccess(bool noRowAccess, std::ostream& err);

}  // namespace velmora::cli
