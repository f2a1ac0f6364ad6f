#pragma once

#include <deque>
#include <span>
#include <string>
#include <variant>

#include "platform/ado/odbc/handles.h"
#include "velmora/ado/provider.h"

namespace velmora::ado::odbc {

/// Values for the "?" of a statement, bound to it in order of appearance under the
/// type and size given (an adVarChar of 30 as varchar(30)). Has to outlive the run.
class BoundParameters {
 public:
  BoundParameters(const Statement& statement, std::span<const ParameterValue> parameters);
  BoundParameters(const BoundParameters&) = delete;
  BoundParameters& operator=(const BoundParameters&) = delete;

 private:
  /// What the driver reads while the statement runs.
  struct Buffer {
    std::variant<std::u16string, std::string, std::int64_t, double, unsigned char,
                 SQL_TIMESTAMP_STRUCT>
        value;
    SQLLEN length = SQL_NULL_DATA;
  };

  static Buffer bufferOf(const ParameterValue& parameter);

  std::deque<Buffer> buffers_;  // a deque leaves its elements where they are
};

}  // namespace velmora::ado::odbc
