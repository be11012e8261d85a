#pragma once

#include <cstdint>

#include "tools/report/Measurement.h"
#include "tools/report/OpenWaits.h"

namespace fyn::productionrules {

/** Measures what the waits did, by their configuration keys; a wait that no key sets is left out. */
class WaitMeter {
 public:
  explicit WaitMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** A decision of `t`, in milliseconds. */
  void take(std::int64_t t, const LayoutDecision& decision) { mOpen.take(t, decision); }

  /** What runs now ran for `time` milliseconds, for `offScreen` of them with somebody off screen. */
  void last(std::int64_t time, std::int64_t offScreen);

 private:
  Measurement& mMeasurement;
  OpenWaits mOpen{[this](const OpenWait& wait, WaitEnd end) {
    if (!wait.decision.key.empty()) {
      WaitFigures& figures = mMeasurement.waits[wait.decision.key];
      ++(end == WaitEnd::RanOut ? figures.ranOut : figures.dropped);
    }
  }};
};

}  // namespace fyn::productionrules
