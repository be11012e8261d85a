#include "tools/base/RealTimePace.h"

namespace fyn::productionrules {

using std::chrono::steady_clock;

RealTimePace::RealTimePace(StopSignals& stop, double speed)
    : mStop(stop), mSpeed(speed), mStart(steady_clock::now()) {}

bool RealTimePace::waitUntil(std::int64_t t) const {
  std::chrono::nanoseconds left{0};
  if (mSpeed > 0) {
    const std::chrono::duration<double, std::milli> due(static_cast<double>(t) / mSpeed);
    left = mStart + std::chrono::duration_cast<std::chrono::nanoseconds>(due) - steady_clock::now();
  }
  return !mStop.waitFor(left);
}

}  // namespace fyn::productionrules
