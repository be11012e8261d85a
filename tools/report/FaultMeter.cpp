#include "tools/report/FaultMeter.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules {

namespace {

// Rounding to whole pixels stays below it.
constexpr double kDistorted = 0.02;

bool isDistorted(const FrameView& frame) {
  const auto ratio = [](const Rect& rect) {
    return (static_cast<double>(rect.right) - rect.left) / (static_cast<double>(rect.bottom) - rect.top);
  };
  return std::abs(ratio(frame.source) / ratio(frame.dest) - 1) > kDistorted;
}

}  // namespace

void FaultMeter::take(const RoomState& room) {
  mShowsNobody = mCutsHead = mShowsTwice = mIsDistorted = false;
  for (const StreamPicture& picture : room.pictures) {
    mIsDistorted = mIsDistorted || std::any_of(picture.frames.begin(), picture.frames.end(), isDistorted);
    if (!room.persons.empty()) {
      takePicture(picture, room.persons);
    }
  }
}

void FaultMeter::takePicture(const StreamPicture& picture, const std::vector<PersonState>& persons) {
  std::vector<int> timesWhole(persons.size());
  for (const FrameView& frame : picture.frames) {
    bool isEmpty = true;
    for (std::size_t index = 0; index < persons.size(); ++index) {
      const Visibility visibility = roughVisibilityIn(frame, persons[index].heads);
      isEmpty = isEmpty && visibility == Visibility::Off;
      mCutsHead = mCutsHead || visibility == Visibility::Cut;
      timesWhole[index] += visibility == Visibility::InView ? 1 : 0;
      mShowsTwice = mShowsTwice || timesWhole[index] > 1;
    }
    mShowsNobody = mShowsNobody || isEmpty;
  }
}

void FaultMeter::last(std::int64_t time) {
  mMeasurement.nobodyInItMs += mShowsNobody ? time : 0;
  mMeasurement.headCutMs += mCutsHead ? time : 0;
  mMeasurement.shownTwiceMs += mShowsTwice ? time : 0;
  mMeasurement.distortedMs += mIsDistorted ? time : 0;
}

}  // namespace fyn::productionrules
