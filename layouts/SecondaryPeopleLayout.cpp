#include "layouts/SecondaryPeopleLayout.h"

#include "layouts/PeopleFrameTimerSetting.h"

namespace fyn::productionrules {

SecondaryPeopleLayout::SecondaryPeopleLayout() {
  mTimerSetting = std::make_shared<PeopleFrameTimerSetting>();
}

const char* SecondaryPeopleLayout::getTag() const {
  return "SecondaryPeopleLayout";
}

std::uint32_t SecondaryPeopleLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead<PeopleFrameTimerSetting>(position);
}

}  // namespace fyn::productionrules
