#include "layouts/people/PeopleFramingLayout.h"

#include "config/PrConfig.h"
#include "layouts/people/ShotChange.h"
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

const char* PeopleFramingLayout::getTag() const {
  return "PeopleFramingLayout";
}

std::shared_ptr<Layout> PeopleFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  const std::uint32_t camId = ownCamera();
  return makeCandidate(*mlData, {findSeats(*mlData, headsForTiles(camId)),
                                 PrConfig::get().compositeModeMaxPeople, camId, camId});
}

void PeopleFramingLayout::reportInput(const MLData& data) {
  mInputFaults.report(data, headsForTiles(ownCamera()), getTag());
}

// ---- Transitions ----

std::string PeopleFramingLayout::getLayoutChangeAnimation() {
  if (PrConfig::get().pfAnimationCutOnly || mState.mCurLayout == nullptr || mState.mNextLayout == nullptr) {
    return "cut";
  }
  return isGroup(*mState.mCurLayout) != isGroup(*mState.mNextLayout) ? "dissolve" : "cut";
}

std::optional<std::string> PeopleFramingLayout::transitionFrom(const Layout& before) const {
  return PrConfig::get().pfAnimationCutOnly ? std::nullopt : steadyTransition(before, *mState.mCurLayout);
}

std::string PeopleFramingLayout::getReframeAnimation(HeadPosition position) {
  return isEased(position) ? "ease" : BasePeopleLayout::getReframeAnimation(position);
}

}  // namespace fyn::productionrules
