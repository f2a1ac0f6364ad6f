#pragma once

#include <optional>

#include "velmora/com/error.h"

namespace velmora {

/// Puts the thread's error information back as it was at the start of its scope: what is
/// done on the side (a look-up, a clean-up) must not touch the reason of the call.
class KeptErrorInfo {
 public:
  KeptErrorInfo() : kept_(com::GetErrorInfo()) {}
  ~KeptErrorInfo() {
    if (kept_) {
      com::SetErrorInfo(std::move(*kept_));
    } else {
      com::ClearErrorInfo();
    }
  }
  KeptErrorInfo(const KeptErrorInfo&) = delete;
  KeptErrorInfo& operator=(const KeptErrorInfo&) = delete;

 private:
  std::optional<com::ErrorInfo> kept_;
};

}  // namespace velmora
