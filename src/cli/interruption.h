#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <signal.h>
#include <stop_token>
#include <thread>

namespace velmora::cli {

/// What ends a running command from outside: Ctrl-C (SIGINT), SIGTERM and the time limit. While
/// the object lives the first of them requests a stop; whoever does not heed it in time, and a
/// second signal, end the program at once, unfinished files removed. A signal that the program
/// was started to ignore stays ignored.
class Interruption {
 public:
  /// `seconds`: the time limit, 0 none. `onOverdue` is called from another thread, before the
  /// program ends for want of heed to the time limit.
  Interruption(int seconds, std::function<void()> onOverdue);
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  ~Interruption();

  std::stop_token token() const noexcept { return stop_.get_token(); }
  /// Whether the time limit has requested the stop.
  bool timedOut() const noexcept { return cause_ == kTimeLimit; }
  /// The exit status for the signal that has requested the stop: 130 or 143.
  std::optional<int> signalStatus() const noexcept;

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr int kTimeLimit = -1;

  void watch(std::optional<Clock::time_point> deadline);
  /// The next signal; 0 when the command has ended, kTimeLimit when the deadline is over.
  int next(std::optional<Clock::time_point> deadline) const;

  std::function<void()> onOverdue_;
  sigset_t signals_{}, before_{};
  int signalFile_ = -1, endFile_ = -1;
  std::stop_source stop_;
  std::atomic<int> cause_ = 0;  // a signal, kTimeLimit, or 0
  std::thread watch_;
};

}  // namespace velmora::cli
