#pragma once

#include <stop_token>

namespace velmora::com {

/// Lets another thread end what this thread runs. While the object lives, every batch and bulk
/// load that its thread starts on any connection, the component's own connections included, ends
/// with com::error::kAdoOperationCancelled soon after a stop has been requested of `token`'s
/// source; so do the component's long loops. What would start afterwards fails with the same
/// error at once. A public operation answers as for any failure. Connections stay usable.
///
///   std::stop_source stop;  // in reach of the thread that may call stop.request_stop()
///   const com::CancellationScope scope(stop.get_token());
///   checks->CheckClosingData(...);
///
/// The innermost scope counts. One connection's batch alone is ended by ado::Connection::Cancel.
class CancellationScope {
 public:
  explicit CancellationScope(std::stop_token token);
  CancellationScope(const CancellationScope&) = delete;
  CancellationScope& operator=(const CancellationScope&) = delete;
  ~CancellationScope();

 private:
  std::stop_token outer_;
};

/// The token of the calling thread's scope; one that never asks for a stop outside any.
const std::stop_token& CurrentCancellation() noexcept;

/// Raises kAdoOperationCancelled once a stop has been requested of the thread's token; for long
/// loops, a few nanoseconds otherwise.
void ThrowIfCancelled();

}  // namespace velmora::com
