#pragma once

#include <stdexcept>
#include <string>

namespace velmora::tsql::values {

/// Why a function of values has no answer; the text begins with SQL Server's number, for
/// instance "245: Conversion failed ...".
class ValueError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace velmora::tsql::values
