#pragma once

#include <iosfwd>
#include <string>

#include "cli/session.h"

namespace velmora::cli {

/// An sDsn for the account set of `session` by which every statement that the component
/// runs is written to `out` first, with its parameters. `out` must outlive its use.
std::string showingSql(const Session& session, std::ostream& out);

}  // namespace velmora::cli
