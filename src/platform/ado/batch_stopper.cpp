#include "platform/ado/batch_stopper.h"

#include <string>
#include <system_error>
#include <utility>

#include "velmora/com/cancellation.h"
#include "velmora/com/error.h"

namespace velmora::ado {

namespace {

constexpr auto kRepeat = std::chrono::milliseconds(50);

}  // namespace

BatchStopper::Batch::Batch(BatchStopper& stopper, Limit limit, Interrupt interrupt)
    : stopper_(stopper.begin(limit, std::move(interrupt))),
      onStop_(com::CurrentCancellation(), Cancel{stopper}) {}

BatchStopper& BatchStopper::begin(Limit limit, Interrupt interrupt) {
  com::ThrowIfCancelled();
  const std::lock_guard lock(mutex_);
  interrupt_ = std::move(interrupt);
  seconds_ = limit.seconds;
  // Most batches have no limit and are not cancelled: they pay for no thread.
  if (limit.seconds > 0)
    watch_ = std::thread(&BatchStopper::interruptFrom, this,
                         Clock::now() + std::chrono::seconds(limit.seconds) + limit.margin);
  running_ = true;
  return *this;
}

void BatchStopper::end() noexcept {
  {
    const std::lock_guard lock(mutex_);
    running_ = false;
  }
  changed_.notify_all();
  if (watch_.joinable()) watch_.join();
  reason_ = Reason::none;
}

void BatchStopper::cancel() noexcept {
  const std::lock_guard lock(mutex_);
  if (!running_ || reason_ != Reason::none) return;
  reason_ = Reason::cancelled;
  changed_.notify_all();
  try {
    if (!watch_.joinable())
      watch_ = std::thread(&BatchStopper::interruptFrom, this, Clock::time_point::max());
  } catch (const std::system_error&) {
    interrupt_();  // no thread to be had: once has to do
  }
}

/// Waits for the deadline or a cancellation, then interrupts until the batch has ended.
void BatchStopper::interruptFrom(Clock::time_point deadline) {
  std::unique_lock lock(mutex_);
  const auto asked = [this] { return !running_ || reason_ != Reason::none; };
  if (!changed_.wait_until(lock, deadline, asked)) reason_ = Reason::timedOut;
  while (running_) {
    lock.unlock();
    {
      const auto turn = withoutInterrupts();
      interrupt_();
    }
    lock.lock();
    changed_.wait_for(lock, kRepeat, [this] { return !running_; });
  }
}

void BatchStopper::throwIfStopped() const {
  if (reason_ == Reason::timedOut) throwTimeout();
  if (reason_ == Reason::cancelled)
    throw com::Error(com::error::kAdoOperationCancelled, source_, "The operation was cancelled");
}

void BatchStopper::throwTimeout() const {
  throw com::Error(com::error::kAdoTimeout, source_,
                   "Timeout expired: the batch ran longer than its CommandTimeout of " +
                       std::to_string(seconds_) + (seconds_ == 1 ? " second" : " seconds"));
}

}  // namespace velmora::ado
