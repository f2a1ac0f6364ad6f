#pragma once

#include <string>

namespace velmora::period {

/// What the batch of the initial-data check depends on.
struct InitialDataOptions {
  bool bArp = true;              ///< receivables, else payables
  bool accountDemanded = false;  ///< an initial document must have its control account
  std::string language;
};

/// The work table that the batch makes and fills.
inline constexpr const char* kErrorInfo = "#ErrorInfo";

/// The batch that writes everything missing for the end of the initialisation into the
/// table #ErrorInfo: FID, FChkItem, FTypeID (always 0), FChkType, FChkInfo.
std::string initialDataBatch(const InitialDataOptions& options);

}  // namespace velmora::period
