#include "layouts/speaker/SecondarySpeakerLayout.h"

#include "config/PrConfig.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"
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

bool SecondarySpeakerLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return !frame.fynHeads.empty() && mHeadFaults.allowFraming(frame, mState.people, getImageSize(frame)) &&
         BaseSecondaryLayout::constructBoundingBox(frame, box, withHeadBuffer);
}

unsigned SecondarySpeakerLayout::getMaxScaleFactor() {
  return speakerZoomLimit();
}

std::uint32_t SecondarySpeakerLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
}

std::vector<Rect> SecondarySpeakerLayout::getGroupHeadBounds(const Frame& frame) {
  return frame.frameType == FramingType::SUBSET_SPEAKER
             ? headsToFollow(frame.fynCamId).bounds(mState.people, frame.fynHeads)
             : BaseSecondaryLayout::getGroupHeadBounds(frame);
}

HeadPosition SecondarySpeakerLayout::getGroupHeadPosition(const Frame& frame) {
  if (frame.frameType == FramingType::SUBSET_SPEAKER &&
      headsToFollow(frame.fynCamId).bounds(mState.people, frame.fynHeads).empty()) {
    return HeadPosition::CENTER;
  }
  return BaseSecondaryLayout::getGroupHeadPosition(frame);
}

void SecondarySpeakerLayout::calculateGroupFraming(Frame& frame) {
  if (frame.frameType != FramingType::SUBSET_SPEAKER) {
    BaseSecondaryLayout::calculateGroupFraming(frame);
    return;
  }
  const std::vector<Rect> members = headsToFollow(frame.fynCamId).bounds(mState.people, frame.fynHeads);
  if (!members.empty()) {
    SpeakerFramingLayoutBuilder::calculateGroupFraming(frame, members, getMaxScaleFactor());
  }
}

}  // namespace fyn::productionrules
