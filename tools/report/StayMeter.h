#pragma once

#include <cstdint>
#include <map>

#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Finds out who was never shown while in the room. */
class StayMeter {
 public:
  /** Who was away for this long, in milliseconds, begins another stay. */
  static constexpr std::int64_t kAwayMs = 2000;

  explicit StayMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** From `t` on the room and the picture are these. */
  void take(std::int64_t t, const RoomState& room);

  /** The state that was taken last lasted until `t`, and `time` milliseconds of it count. */
  void last(std::int64_t t, std::int64_t time);

  /** The recording ends. */
  void finish();

 private:
  struct Stay {
    std::int64_t lastThere = 0;
    bool isThere = false;
    std::int64_t time = 0;
    bool isShown = false;
  };

  void end(std::int64_t id, const Stay& stay);

  Measurement& mMeasurement;
  std::map<std::int64_t, Stay> mStays;
  /** Of everybody whose stay has ended: whether any of them was shown. */
  std::map<std::int64_t, bool> mWasShown;
};

}  // namespace fyn::productionrules
