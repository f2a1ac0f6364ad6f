#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace velmora::ado {

/// Stops what a connection runs: when its time is over, when another thread cancels it, or when
/// the running thread's com::CancellationScope asks for it. One a connection.
class BatchStopper {
 public:
  /// Interrupts the running statement; called from another thread, again and again until the
  /// batch has ended, since one that comes just before a statement starts may have no effect.
  using Interrupt = std::function<void()>;

  struct Limit {
    int seconds = 0;  ///< 0: none
    /// Added for a driver that watches the time itself.
    std::chrono::milliseconds margin{0};
  };

  /// A batch's run, from its first statement to its end.
  class Batch {
   public:
    /// Raises kAdoOperationCancelled when the thread's scope asks for a stop already.
    Batch(BatchStopper& stopper, Limit limit, Interrupt interrupt);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    /// No interrupt comes any more.
    ~Batch() { stopper_.end(); }

   private:
    struct Cancel {
      BatchStopper& stopper;
      void operator()() const noexcept { stopper.cancel(); }
    };
    BatchStopper& stopper_;
    std::stop_callback<Cancel> onStop_;
  };

  /// `source` of the errors that it raises.
  explicit BatchStopper(const char* source) : source_(source) {}
  BatchStopper(const BatchStopper&) = delete;
  BatchStopper& operator=(const BatchStopper&) = delete;
  ~BatchStopper() = default;

  /// Asks the running batch to end; nothing without one. Any thread.
  void cancel() noexcept;

  /// Whether the running batch was asked to end.
  bool stopped() const noexcept { return reason_ != Reason::none; }
  /// Raises kAdoTimeout or kAdoOperationCancelled when it was.
  void throwIfStopped() const;
  [[noreturn]] void throwTimeout() const;

  /// While it is held no interrupt comes: for a step that must not be torn from what follows.
  [[nodiscard]] std::unique_lock<std::mutex> withoutInterrupts() {
    return std::unique_lock(interrupting_);
  }

  /// Ends the batch's run early, so that the statements that undo it are not stopped.
  void end() noexcept;

 private:
  enum class Reason { none, cancelled, timedOut };
  using Clock = std::chrono::steady_clock;

  BatchStopper& begin(Limit limit, Interrupt interrupt);
  void interruptFrom(Clock::time_point deadline);

  const char* source_;
  int seconds_ = 0;
  Interrupt interrupt_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool running_ = false;
  std::atomic<Reason> reason_ = Reason::none;
  std::mutex interrupting_;
  std::thread watch_;
};

}  // namespace velmora::ado
