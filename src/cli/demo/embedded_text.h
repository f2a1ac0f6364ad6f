#pragma once

#include <span>
#include <string_view>

namespace velmora::cli::demo {

/// A file compiled into the program.
struct EmbeddedText {
  std::string_view name;  ///< file name without folder
  std::string_view text;
};

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
