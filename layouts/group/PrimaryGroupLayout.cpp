#include "layouts/group/PrimaryGroupLayout.h"

#include "layouts/cycle/ZoomLimit.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

PrimaryGroupLayout::PrimaryGroupLayout() {
  mTimerSetting = std::make_shared<GroupFramingTimerSetting>();
}

const char* PrimaryGroupLayout::getTag() const {
  return "PrimaryGroupLayout";
}

unsigned PrimaryGroupLayout::getMaxScaleFactor() {
  return groupZoomLimit();
}

std::shared_ptr<Layout> PrimaryGroupLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  // Kept at error level and on every call: the field tools count primaries by it.
  PRB_LOGE("BaseLayout", "%s *******Enter", "createLayout");
  return BaseLayout::createLayout(mlData);
}

std::uint32_t PrimaryGroupLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
}

}  // namespace fyn::productionrules
