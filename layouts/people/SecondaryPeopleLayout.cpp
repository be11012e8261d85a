#include "layouts/people/SecondaryPeopleLayout.h"

#include "config/PrConfig.h"
#include "layouts/people/PeopleFrameTimerSetting.h"

namespace fyn::productionrules {

SecondaryPeopleLayout::SecondaryPeopleLayout() {
  mTimerSetting = std::make_shared<PeopleFrameTimerSetting>();
}

const char* SecondaryPeopleLayout::getTag() const {
  return "SecondaryPeopleLayout";
}

bool SecondaryPeopleLayout::applySecondaryLayout(const std::shared_ptr<Layout>& layout) {
  return !refusesEmptyPicture(layout) && BaseSecondaryLayout::applySecondaryLayout(layout);
}

bool SecondaryPeopleLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return !frame.fynHeads.empty() && mHeadFaults.allowFraming(frame, mState.people, getImageSize(frame)) &&
         BaseSecondaryLayout::constructBoundingBox(frame, box, withHeadBuffer);
}

std::uint32_t SecondaryPeopleLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
}

void SecondaryPeopleLayout::updateFrameView(Frame& frame) {
  const Rect sent = frame.source;
  BaseSecondaryLayout::updateFrameView(frame);
  const PrConfig& config = PrConfig::get();
  const bool followsItself = config.pfReframeOnSecondaryEnabled && frame.frameType != FramingType::GROUP;
  if (config.steadyFramingEnabled && !followsItself && !isZeroRect(sent)) {
    frame.source = sent;
  }
}

}  // namespace fyn::productionrules
