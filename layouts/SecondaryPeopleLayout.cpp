#include "layouts/SecondaryPeopleLayout.h"

#include <algorithm>

#include "layouts/PeopleFrameTimerSetting.h"

namespace fyn::productionrules {

namespace {

// The entry that a primary sends when it cuts nothing from this camera has the type NONE: that is no fault.
bool showsNothing(const Frame& frame) {
  return frame.frameType != FramingType::NONE && isZeroRect(frame.source);
}

}  // namespace

SecondaryPeopleLayout::SecondaryPeopleLayout() {
  mTimerSetting = std::make_shared<PeopleFrameTimerSetting>();
}

const char* SecondaryPeopleLayout::getTag() const {
  return "SecondaryPeopleLayout";
}

bool SecondaryPeopleLayout::applySecondaryLayout(const std::shared_ptr<Layout>& layout) {
  if (!BaseSecondaryLayout::applySecondaryLayout(layout)) {
    return false;
  }
  const std::vector<Frame>& frames = mCurLayout->frames;
  return frames.empty() || !std::all_of(frames.begin(), frames.end(), showsNothing);
}

bool SecondaryPeopleLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return !frame.fynHeads.empty() && mHeadFaults.isBoxWorthAsking(frame, mPeopleMap, getImageSize(frame)) &&
         BaseSecondaryLayout::constructBoundingBox(frame, box, withHeadBuffer);
}

std::uint32_t SecondaryPeopleLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead<PeopleFrameTimerSetting>(position);
}

}  // namespace fyn::productionrules
