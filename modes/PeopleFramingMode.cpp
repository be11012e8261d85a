#include "modes/PeopleFramingMode.h"

#include <algorithm>
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

bool PeopleFramingMode::process(const std::shared_ptr<MLData>& mlData) {
  const PrConfig& config = PrConfig::get();
  if (!config.pfSteadyPresenceEnabled) {
    return BaseTrackingMode::process(mlData);
  }
  // The waits after people have left are shorter by this time: it is how long a person counts who is missed.
  const auto holdMs = static_cast<std::int32_t>(PeopleFrameTimerSetting(config).peopleLeftTimerReduction);
  return BaseTrackingMode::process(
      mPresence.steady(*mlData, GetTicks(), static_cast<std::uint32_t>(std::max(holdMs, 0))));
}

void PeopleFramingMode::resetLayouts() {
  mPresence.forget();
  BaseTrackingMode::resetLayouts();
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
