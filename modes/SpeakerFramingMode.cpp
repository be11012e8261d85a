#include "modes/SpeakerFramingMode.h"

#include <utility>

#include "layouts/speaker/PrimarySpeakerLayout.h"
#include "layouts/speaker/SecondarySpeakerLayout.h"
#include "layouts/speaker/SpeakerFramingLayout.h"
#include "platform/Ticks.h"

namespace fyn::productionrules {

SpeakerFramingMode::SpeakerFramingMode(BaseLayoutNotifier& notifier, std::shared_ptr<BaseLayout> layout)
    : BaseTrackingMode(notifier) {
  setEngine(layout != nullptr ? std::move(layout) : std::make_shared<SpeakerFramingLayout>());
}

void SpeakerFramingMode::checkAndSetSystemTimers() {
  mLastTimerCheck = GetTicks();
  // The engine fills its own waits whenever it is asked for them.
  if (mLayout != nullptr) {
    mLayout->setTimerSetting(mLayout->getTimerSetting());
  }
}

std::shared_ptr<BaseLayout> SpeakerFramingMode::makeLayout(FynOperatingMode mode) const {
  return makeLayoutForRole<SpeakerFramingLayout, PrimarySpeakerLayout, SecondarySpeakerLayout>(mode, mLayout);
}

std::string SpeakerFramingMode::getName() const {
  return "SpeakerFramingMode";
}

}  // namespace fyn::productionrules
