#include "modes/PeopleFramingMode.h"

#include <utility>

#include "config/PrConfig.h"
#include "layouts/people/PeopleFrameTimerSetting.h"
#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PrimaryPeopleLayout.h"
#include "layouts/people/SecondaryPeopleLayout.h"
#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

PeopleFramingMode::PeopleFramingMode(BaseLayoutNotifier& notifier, std::shared_ptr<BaseLayout> layout)
    : BaseTrackingMode(notifier) {
  setEngine(layout != nullptr ? std::move(layout) : std::make_shared<PeopleFramingLayout>());
}

void PeopleFramingMode::checkAndSetSystemTimers() {
  mLastTimerCheck = GetTicks();
  if (mLayout != nullptr) {
    mLayout->setTimerSetting(std::make_shared<PeopleFrameTimerSetting>(PrConfig::get()));
  }
}

std::shared_ptr<BaseLayout> PeopleFramingMode::makeLayout(FynOperatingMode mode) const {
  PRB_LOGI("PeopleFramingMode", "%s: setting FynOpMode %d", "makeLayout", static_cast<int>(mode));
  return makeLayoutForRole<PeopleFramingLayout, PrimaryPeopleLayout, SecondaryPeopleLayout>(mode, mLayout);
}

std::string PeopleFramingMode::getName() const {
  return "PeopleFramingMode";
}

}  // namespace fyn::productionrules
