#pragma once

#include <chrono>
#include <cstdint>

namespace fyn::productionrules {

/** Keeps a replay to real time: the recording's time 0 is when it was made. Ctrl-C and SIGTERM end the wait.
 */
class RealTimePace {
 public:
  /** `speed` 1 is real time; 0 does not wait at all. */
  explicit RealTimePace(double speed);
  ~RealTimePace();
  RealTimePace(const RealTimePace&) = delete;
  RealTimePace& operator=(const RealTimePace&) = delete;

  /** Waits until `t` (milliseconds of the recording) is due. False when somebody asked to end. */
  bool waitUntil(std::int64_t t) const;

 private:
  const double mSpeed;
  const std::chrono::steady_clock::time_point mStart;
};

}  // namespace fyn::productionrules
