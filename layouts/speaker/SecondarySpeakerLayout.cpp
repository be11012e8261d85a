#include "layouts/speaker/SecondarySpeakerLayout.h"

#include "config/PrConfig.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/speaker/MemberFrame.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"

namespace fyn::productionrules {

SecondarySpeakerLayout::SecondarySpeakerLayout() {
  mTimerSetting = std::make_shared<SpeakerFramingTimerSetting>();
}

const char* SecondarySpeakerLayout::getTag() const {
  return "SecondarySpeakerLayout";
}

std::shared_ptr<BaseTimerSetting>& SecondarySpeakerLayout::getTimerSetting() {
  mTimerSetting = std::make_shared<SpeakerFramingTimerSetting>(PrConfig::get());
  return mTimerSetting;
}

bool SecondarySpeakerLayout::applySecondaryLayout(const std::shared_ptr<Layout>& layout) {
  return !refusesEmptyPicture(layout) && BaseSecondaryLayout::applySecondaryLayout(layout);
}

unsigned SecondarySpeakerLayout::getMaxScaleFactor() {
  return speakerZoomLimit();
}

std::uint32_t SecondarySpeakerLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
}

HeadPosition SecondarySpeakerLayout::getCurrentHeadPosition(const Frame& frame) {
  return isOfSpeaker(frame.frameType) ? memberPosition(frame, mState.people)
                                      : BaseSecondaryLayout::getCurrentHeadPosition(frame);
}

void SecondarySpeakerLayout::updateFrameView(Frame& frame) {
  if (!isOfSpeaker(frame.frameType)) {
    BaseSecondaryLayout::updateFrameView(frame);
    return;
  }
  mHeadFaults.report(frame, mState.people);
  if (!headsToFollow(frame.fynCamId).bounds(mState.people, frame.fynHeads).empty()) {
    placeMembers(frame, mState.people);
  }
}

}  // namespace fyn::productionrules
