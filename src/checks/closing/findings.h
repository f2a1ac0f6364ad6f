#pragma once

#include <cstdint>
#include <string_view>

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"

namespace velmora::closing {

/// The findings of a closing check as a recordset in memory: FID (running number),
/// FChkItem, FChkType, FChkInfo.
class Findings {
 public:
  Findings();

  /// A finding for each row of `rows` from the current one on; name, severity and message
  /// template are the check item's (FChkItem, FChkType, FChkInfo). A text longer than its
  /// column is kept to the column's size, so that one long document number cannot stop the
  /// whole check. Raises as filledMessage.
  void add(const collections::Dictionary& item, ado::Recordset& rows);
  std::int32_t count() const noexcept { return count_; }
  /// The recordset, on its first row.
  const ado::RecordsetRef& recordset();

 private:
  void add(std::string_view item, std::string_view severity, std::string_view message);

  ado::RecordsetRef rows_;
  std::int32_t count_ = 0;
};

}  // namespace velmora::closing
