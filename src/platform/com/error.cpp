#include "velmora/com/error.h"

namespace velmora::com {

namespace {
thread_local std::optional<ErrorInfo> threadError;
}

void SetErrorInfo(ErrorInfo info) {
  threadError = std::move(info);
}

const std::optional<ErrorInfo>& GetErrorInfo() noexcept {
  return threadError;
}

void ClearErrorInfo() noexcept {
  threadError.reset();
}

ErrorInfo currentErrorInfo(std::string place) {
  try {
    throw;
  } catch (const Error& e) {
    return {e.number(), e.source(), e.description(), std::move(place)};
  } catch (const std::exception& e) {
    return {error::kFailed, "Velmora", e.what(), std::move(place)};
  } catch (...) {
    return {error::kFailed, "Velmora", "unknown exception", std::move(place)};
  }
}

}  // namespace velmora::com
