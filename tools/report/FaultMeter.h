#pragma once

#include <cstdint>

#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Measures for how long what is on screen is wrong, whatever asked for it. */
class FaultMeter {
 public:
  explicit FaultMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** From now on the room and the picture are these. */
  void take(const RoomState& room);

  /** The state that was taken last lasted for `time` milliseconds. */
  void last(std::int64_t time);

 private:
  void takePicture(const StreamPicture& picture, const std::vector<PersonState>& persons);

  Measurement& mMeasurement;
  bool mShowsNobody = false;
  bool mCutsHead = false;
  bool mShowsTwice = false;
  bool mIsDistorted = false;
};

}  // namespace fyn::productionrules
