#pragma once

#include <cstdint>
#include <string_view>

#include "velmora/ado/recordset.h"

namespace velmora::period {

/// The findings of the account check as a recordset in memory: FID (running number),
/// FErrType, FErrInfo, FKey (the name of the item class).
class AccountFindings {
 public:
  AccountFindings();

  /// A text longer than its column is kept to the column's size.
  void add(std::string_view severity, std::string_view message, std::string_view itemClass);
  /// The recordset, on its first row.
  const ado::RecordsetRef& recordset();

 private:
  ado::RecordsetRef rows_;
  std::int32_t count_ = 0;
};

}  // namespace velmora::period
