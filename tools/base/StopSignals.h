#pragma once

#include <chrono>
#include <csignal>

namespace fyn::productionrules {

/**
 * Takes SIGINT, SIGTERM and (unless it is ignored) SIGHUP as a wish to end, for as long as it lives. Make it
 * before any thread starts: threads inherit that the signals are held back.
 */
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  /** Waits for a wish to end, at most `limit`. Once wished, always true at once. */
  bool waitFor(std::chrono::nanoseconds limit);

 private:
  sigset_t mSignals{};
  sigset_t mFormerMask{};
  bool mStopped = false;
};

}  // namespace fyn::productionrules
