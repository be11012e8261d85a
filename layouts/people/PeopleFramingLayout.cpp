#include "layouts/people/PeopleFramingLayout.h"

#include <sstream>

#include "config/PrConfig.h"
#include "layouts/people/PeopleFrameTimerSetting.h"
#include "layouts/people/PeopleWaits.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

bool isEased(HeadPosition position) {
  switch (position) {
    case HeadPosition::HEAD_ON_EDGE:
    case HeadPosition::HEAD_OFF_CENTER:
    case HeadPosition::GROUP_MOVE_CLOSE:
    case HeadPosition::GROUP_HEAD_ON_EDGE:
      return PrConfig::get().animationEnableEase;
    default:
      return false;
  }
}

std::uint32_t ownCamera() {
  return static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
}

bool isGroup(const Layout& layout) {
  return layout.layoutType == FramingType::GROUP;
}

}  // namespace

PeopleFramingLayout::PeopleFramingLayout() : mTiles(*this) {
  mTimerSetting = std::make_shared<PeopleFrameTimerSetting>();
}

const char* PeopleFramingLayout::getTag() const {
  return "PeopleFramingLayout";
}

std::shared_ptr<Layout> PeopleFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  const std::uint32_t camId = ownCamera();
  return mTiles.makeCandidate(*mlData, {findSeats(*mlData, headsForTiles(camId)),
                                        PrConfig::get().compositeModeMaxPeople, camId, camId});
}

void PeopleFramingLayout::reportInput(const MLData& data) {
  mInputFaults.report(data, headsForTiles(ownCamera()), getTag());
}

void PeopleFramingLayout::fillPositionRect(std::shared_ptr<Layout>& layout) {
  mTiles.fillPositionRect(layout);
}

bool PeopleFramingLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return mTiles.constructBoundingBox(frame, box, withHeadBuffer);
}

Rect PeopleFramingLayout::getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box) {
  return mTiles.baseRect(frame, box);
}

// ---- Waits ----

std::uint32_t PeopleFramingLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead<PeopleFrameTimerSetting>(position);
}

std::uint32_t PeopleFramingLayout::getOtherLayoutChangeTimer(FramingType newType,
                                                             std::stringstream& /*explanation*/,
                                                             bool peopleCountChanged) {
  const WaitRule* const wait = findPeopleWait(mState.mCurLayout->layoutType, newType, peopleCountChanged);
  return wait != nullptr && timerSettingAs<PeopleFrameTimerSetting>() != nullptr ? chooseWait(wait->wait) : 0;
}

std::uint32_t PeopleFramingLayout::getWaitTime(const std::shared_ptr<Layout>& candidate,
                                               bool peopleCountChanged) {
  const auto* const setting = timerSettingAs<PeopleFrameTimerSetting>();
  if (mState.mCurLayout == nullptr || setting == nullptr) {
    return 0;
  }
  const bool havePeopleLeft = mState.mCurLayout->faceCount > candidate->faceCount;
  return shortenWait(getLayoutChangeTimer(candidate->layoutType, peopleCountChanged),
                     havePeopleLeft ? setting->peopleLeftTimerReduction : 0);
}

// ---- Transitions ----

std::string PeopleFramingLayout::getLayoutChangeAnimation() {
  if (PrConfig::get().pfAnimationCutOnly || mState.mCurLayout == nullptr || mState.mNextLayout == nullptr) {
    return "cut";
  }
  return isGroup(*mState.mCurLayout) != isGroup(*mState.mNextLayout) ? "dissolve" : "cut";
}

std::string PeopleFramingLayout::getReframeAnimation(HeadPosition position) {
  return isEased(position) ? "ease" : "cut";
}

std::uint32_t PeopleFramingLayout::getReframeAnimationDuration(HeadPosition position) {
  return getLayoutChangeDuration(isEased(position) ? "ease" : "cut");
}

}  // namespace fyn::productionrules
