#include "modes/GroupTrackingMode.h"

#include <utility>

#include "config/PrConfig.h"
#include "layouts/group/GroupFramingLayout.h"
#include "layouts/group/GroupFramingTimerSetting.h"
#include "layouts/group/PrimaryGroupLayout.h"
#include "layouts/group/SecondaryGroupLayout.h"
#include "platform/Ticks.h"

namespace fyn::productionrules {

GroupTrackingMode::GroupTrackingMode(BaseLayoutNotifier& notifier, std::shared_ptr<BaseLayout> layout)
    : BaseTrackingMode(notifier) {
  setEngine(layout != nullptr ? std::move(layout) : std::make_shared<GroupFramingLayout>());
}

void GroupTrackingMode::checkAndSetSystemTimers() {
  mLastTimerCheck = GetTicks();
  if (mLayout != nullptr) {
    mLayout->setTimerSetting(std::make_shared<GroupFramingTimerSetting>(PrConfig::get()));
  }
}

std::shared_ptr<BaseLayout> GroupTrackingMode::makeLayout(FynOperatingMode mode) const {
  return makeLayoutForRole<GroupFramingLayout, PrimaryGroupLayout, SecondaryGroupLayout>(mode, mLayout);
}

std::string GroupTrackingMode::getName() const {
  return "GroupTrackingMode";
}

}  // namespace fyn::productionrules
