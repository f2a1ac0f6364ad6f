#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace velmora::cli {

struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

/// What the command line chose to run; answers the exit status.
using Run = std::function<int(Streams&)>;

/// The program's command line with every command. Parsing it leaves in `chosen` what
/// is to be run; `chosen` must outlive it.
std::unique_ptr<CLI::App> makeProgram(Run& chosen);

/// Parses and runs; the answer is the exit status. Failures are told on `streams.err`.
int runProgram(std::vector<std::string> arguments, Streams streams);

}  // namespace velmora::cli
