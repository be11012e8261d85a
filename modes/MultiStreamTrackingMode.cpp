#include "modes/MultiStreamTrackingMode.h"

#include <utility>

#include "layouts/streams/MultiStreamFramingLayout.h"
#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

MultiStreamTrackingMode::MultiStreamTrackingMode(BaseLayoutNotifier& notifier,
                                                 std::shared_ptr<BaseLayout> layout)
    : BaseTrackingMode(notifier) {
  setEngine(layout != nullptr ? std::move(layout) : std::make_shared<MultiStreamFramingLayout>());
}

void MultiStreamTrackingMode::checkAndSetSystemTimers() {
  mLastTimerCheck = GetTicks();
  // The engine fills its own waits whenever it is asked for them.
  if (mLayout != nullptr) {
    mLayout->setTimerSetting(mLayout->getTimerSetting());
  }
}

std::shared_ptr<BaseLayout> MultiStreamTrackingMode::makeLayout(FynOperatingMode /*mode*/) const {
  return std::make_shared<MultiStreamFramingLayout>();
}

void MultiStreamTrackingMode::sendLayout(bool debug) {
  std::vector<Layout> layouts;
  if (mLayout != nullptr) {
    for (const std::shared_ptr<Layout>& layout : mLayout->getFinalLayoutPtrs()) {
      if (layout != nullptr) {
        layouts.push_back(*layout);
      }
    }
  }
  PRB_LOGI("MultiStreamTrackingMode", "%s: sendLayouts, size %d ", "sendLayout",
           static_cast<int>(layouts.size()));
  mNotifier.sendLayouts(layouts, getTrackingMode(), debug);
  mLayoutPending = false;
}

void MultiStreamTrackingMode::setLayoutAnimationToCut() {
  if (mLayout == nullptr) {
    return;
  }
  for (const std::shared_ptr<Layout>& layout : mLayout->getFinalLayoutPtrs()) {
    setLayoutAnimation(layout, "cut", 0);
  }
}

void MultiStreamTrackingMode::setMaxStreams(unsigned count) {
  if (mLayout != nullptr) {
    mLayout->setMaxLayouts(count);
  }
}

}  // namespace fyn::productionrules
