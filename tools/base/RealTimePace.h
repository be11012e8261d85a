#pragma once

#include <chrono>
#include <cstdint>

#include "tools/base/StopSignals.h"

namespace fyn::productionrules {

/** Keeps a recording to real time: its time 0 is when this was made. */
class RealTimePace {
 public:
  /** `speed` 1 is real time, 2 twice as fast; 0 does not wait at all. */
  RealTimePace(StopSignals& stop, double speed);

  /** Waits until `t` (milliseconds of the recording) is due. False when somebody asked to end. */
  bool waitUntil(std::int64_t t) const;

 private:
  StopSignals& mStop;
  const double mSpeed;
  const std::chrono::steady_clock::time_point mStart;
};

}  // namespace fyn::productionrules
