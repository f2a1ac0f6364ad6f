#pragma once

#include "common/embedded_text.h"

namespace velmora::cli::demo {

/// The scripts that create the tables of an account set, in the order to run them.
std::span<const EmbeddedText> schemaScripts();

/// The scripts that enter what every demonstration set has: currencies, accounts,
/// document types, departments, employees.
std::span<const EmbeddedText> basicDataScripts();

/// The scripts that plant faults in the basic data.
std::span<const EmbeddedText> basicFaultScripts();

/// The scripts that enter what a new account set has: start periods.
std::span<const EmbeddedText> newSetScripts();

}  // namespace velmora::cli::demo
