#include "cli/interruption.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

#include "cli/failure.h"

namespace velmora::cli {

namespace {

// A command that a signal stops is to be gone within a second. At its time limit there is no
// such hurry, and what it was doing is worth telling.
constexpr auto kSignalGrace = std::chrono::milliseconds(700);
constexpr auto kLimitGrace = std::chrono::seconds(3);

int statusOf(int signal) {
  return 128 + signal;
}

bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

Interruption::Interruption(int seconds, std::function<void()> onOverdue)
    : onOverdue_(std::move(onOverdue)) {
  sigemptyset(&signals_);
  for (const int signal : {SIGINT, SIGTERM})
    if (!isIgnored(signal)) sigaddset(&signals_, signal);
  // Threads started from now on inherit this, so that the one that watches gets the signals.
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  signalFile_ = signalfd(-1, &signals_, SFD_CLOEXEC);
  endFile_ = eventfd(0, EFD_CLOEXEC);
  std::optional<Clock::time_point> deadline;
  if (seconds > 0) deadline = Clock::now() + std::chrono::seconds(seconds);
  watch_ = std::thread(&Interruption::watch, this, deadline);
}

Interruption::~Interruption() {
  eventfd_write(endFile_, 1);
  watch_.join();
  close(signalFile_);
  close(endFile_);
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

std::optional<int> Interruption::signalStatus() const noexcept {
  const int cause = cause_;
  return cause > 0 ? std::optional(statusOf(cause)) : std::nullopt;
}

void Interruption::watch(std::optional<Clock::time_point> deadline) {
  const int cause = next(deadline);
  if (cause == 0) return;
  cause_ = cause;
  stop_.request_stop();
  const int second = next(Clock::now() + (cause == kTimeLimit ? kLimitGrace : kSignalGrace));
  if (second == 0) return;
  if (second > 0) std::quick_exit(statusOf(second));
  if (cause > 0) std::quick_exit(statusOf(cause));
  onOverdue_();
  std::quick_exit(kFailed);
}

int Interruption::next(std::optional<Clock::time_point> deadline) const {
  std::array<pollfd, 2> files{pollfd{endFile_, POLLIN, 0}, pollfd{signalFile_, POLLIN, 0}};
  for (;;) {
    int wait = -1;
    if (deadline) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now());
      if (left.count() <= 0) return kTimeLimit;
      wait = static_cast<int>(std::min<std::int64_t>(left.count(), 1'000'000'000));
    }
    if (poll(files.data(), files.size(), wait) <= 0) continue;
    if (files[0].revents != 0) return 0;
    signalfd_siginfo info{};
    if (read(signalFile_, &info, sizeof info) == sizeof info)
      return static_cast<int>(info.ssi_signo);
  }
}

}  // namespace velmora::cli
