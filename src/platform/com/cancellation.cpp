#include "velmora/com/cancellation.h"

#include <utility>

#include "velmora/com/error.h"

namespace velmora::com {

namespace {

std::stop_token& current() noexcept {
  thread_local std::stop_token token;
  return token;
}

}  // namespace

CancellationScope::CancellationScope(std::stop_token token)
    : outer_(std::exchange(current(), std::move(token))) {}

CancellationScope::~CancellationScope() {
  current() = std::move(outer_);
}

const std::stop_token& CurrentCancellation() noexcept {
  return current();
}

void ThrowIfCancelled() {
  if (current().stop_requested())
    throw Error(error::kAdoOperationCancelled, "Velmora", "The operation was cancelled");
}

}  // namespace velmora::com
