#include "layouts/group/GroupFramingLayout.h"

#include "layouts/cycle/ZoomLimit.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

GroupFramingLayout::GroupFramingLayout() {
  mTimerSetting = std::make_shared<GroupFramingTimerSetting>();
}

const char* GroupFramingLayout::getTag() const {
  return "GroupFramingLayout";
}

unsigned GroupFramingLayout::getMaxScaleFactor() {
  return FynCamerasConfig::get().getCameraType() == kUnlimitedZoomCameraType ? 0 : groupZoomLimit();
}

std::string GroupFramingLayout::getLayoutChangeAnimation() {
  return "cut";
}

std::uint32_t GroupFramingLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
}

}  // namespace fyn::productionrules
