#pragma once

#include <span>

#include "cli/demo/embedded_text.h"
#include "velmora/ado/connection.h"

namespace velmora::cli::demo {

/// Runs the batches of the scripts one after the other. Raises the provider's error,
/// its description beginning with the script and the line its batch starts on.
void runScripts(ado::Connection& connection, std::span<const EmbeddedText> scripts);

}  // namespace velmora::cli::demo
