#pragma once

#include <stdexcept>

namespace velmora::cli {

/// Exit status of the program.
enum ExitStatus : int {
  kOk = 0,       ///< ran, and nothing blocks
  kBlocked = 1,  ///< ran, and something blocks
  kUsage = 2,    ///< the command line is wrong
  kFailed = 3,   ///< could not run
};

/// The command line is well-formed but says too little or contradicts itself.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A command could not run; the text is for the person at the screen.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace velmora::cli
