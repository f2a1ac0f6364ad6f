#pragma once

#include <cstdint>
#include <string>

#include "velmora/com/dispatch_table.h"

namespace velmora::suite {

/// "TirnBase.SecurityInfo": who is calling.
class SecurityInfo final : public com::DispatchObject<SecurityInfo> {
 public:
  static const com::DispatchTable<SecurityInfo>& dispatchTable();

  /// The key UserID of the caller's whole string; 0, nobody in particular, when it is
  /// absent or empty. Raises kInvalidArgument naming the value when it is no whole number
  /// from 0 to 2147483647, kDuplicateKey when a key occurs twice.
  std::int32_t GetCurrentUserID(const std::string& connectionString);
};

}  // namespace velmora::suite
