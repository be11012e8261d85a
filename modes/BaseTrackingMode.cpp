#include "modes/BaseTrackingMode.h"

#include <algorithm>
#include <utility>

#include "config/PrConfig.h"
#include "model/Arithmetic.h"
#include "platform/ServiceState.h"
#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseTrackingMode";

// Ticks between two debug timer documents while a timer runs.
constexpr std::uint32_t kDebugTimerPeriod = 1001;

// The smallest head height that is reported when nobody is there, in pixels.
constexpr std::int32_t kNoHeadHeight = 1280;

}  // namespace

BaseTrackingMode::BaseTrackingMode(BaseLayoutNotifier& notifier)
    : mNotifier(notifier),
      mTimerCheckPeriod(static_cast<std::uint32_t>(PrConfig::get().prPollTimerThreshold)) {}

void BaseTrackingMode::setEngine(std::shared_ptr<BaseLayout> layout) {
  mLayout = std::move(layout);
  if (mLayout != nullptr) {
    mLayout->setDecisionListener(mDecisionListener);
  }
}

void BaseTrackingMode::setDecisionListener(DecisionListener* listener) {
  mDecisionListener = listener;
  setEngine(mLayout);
}

void BaseTrackingMode::updateTrackingModeLayout(FynOperatingMode mode, std::shared_ptr<BaseLayout> layout) {
  mOperatingMode = mode;
  setEngine(layout != nullptr ? std::move(layout) : makeLayout(mode));
}

bool BaseTrackingMode::process(const std::shared_ptr<MLData>& seen) {
  if (mLayout == nullptr) {
    PRB_LOGW(kTag, "KORVALDEBUG process: layout is null");
    return false;
  }
  if (mTimerCheckPeriod != 0 && GetTicks() - mLastTimerCheck > mTimerCheckPeriod) {
    checkAndSetSystemTimers();
  }
  const std::shared_ptr<MLData> mlData = mLayout->findPresent(seen);
  // Asked before the map is updated, because the question compares the new result with it.
  const bool publishPeopleCount = mLayout->shouldPublishUpdatedPeopleCount(mlData);
  mLayout->updatePeopleMap(mlData);
  if (publishPeopleCount) {
    sendPeopleCountInfo();
  }
  const bool changed = mLayout->applyingLayout(mlData) || mLayoutPending ||
                       mLayout->updateFeedPriorityOfFrame() || mLayout->updateLayoutFraming();
  std::uint32_t& lastSend = ServiceState::current().times.lastDebugTimerSend;
  if (!changed && (!mLayout->isThereATimerRunning() || GetTicks() - lastSend < kDebugTimerPeriod)) {
    return false;
  }
  sendDebugTimerInfo(mLayout);
  lastSend = GetTicks();
  return changed;
}

std::string BaseTrackingMode::getDebugDataInJson() {
  return mLayout != nullptr ? mLayout->getDebugDataInJson() : std::string();
}

void BaseTrackingMode::sendLayout(bool debug) {
  PRB_LOGD(kTag, "sendLayout: Sending layout %s", mLayout != nullptr ? "not null" : "null");
  if (mLayout != nullptr) {
    const std::shared_ptr<Layout> layout = mLayout->getLayoutPtr();
    if (layout == nullptr) {
      PRB_LOGW(kTag, "sendLayout: getLayoutPtr returned null");
    } else if (PrConfig::get().fpBeta1Enabled && layout->frames.empty()) {
      PRB_LOGW(kTag, "sendLayout: layout has no frames");
    } else {
      mNotifier.sendLayout(*layout, getTrackingMode(), debug);
    }
  }
  mLayoutPending = false;
}

void BaseTrackingMode::sendDebugTimerInfo(const std::shared_ptr<BaseLayout>& layout) {
  if (layout != nullptr && PrConfig::get().fynDebugEnabled) {
    mNotifier.sendDebugTimerInfo(layout->getFinalLayoutPtrs(), layout->getNextLayoutPtrs());
  }
}

void BaseTrackingMode::sendPeopleCountInfo() {
  if (mLayout == nullptr) {
    return;
  }
  std::int32_t minHeadHeight = kNoHeadHeight;
  for (const auto& [id, person] : mLayout->peopleMap()) {
    if (const Head* const head = person->findHead(FynHead::kNoCamera)) {
      minHeadHeight = std::min(minHeadHeight, wrapSub(head->bbox.bottom, head->bbox.top));
    }
  }
  mNotifier.sendPeopleCount(mLayout->getPeopleCount(), static_cast<unsigned>(minHeadHeight));
}

std::shared_ptr<BaseLayout> BaseTrackingMode::getFramingLayout() {
  return mLayout;
}

void BaseTrackingMode::setLayoutAnimationToCut() {
  if (mLayout != nullptr) {
    setLayoutAnimation(mLayout->getLayoutPtr(), "cut", 0);
  }
}

void BaseTrackingMode::setSecondaryLayout(const std::vector<std::shared_ptr<Layout>>& layouts) {
  if (!layouts.empty() && mLayout != nullptr && mLayout->applySecondaryLayout(layouts.front())) {
    mLayoutPending = true;
  }
}

void BaseTrackingMode::resetLayouts() {
  if (mLayout != nullptr) {
    mLayout->resetLayouts();
  }
}

std::vector<Rect> BaseTrackingMode::getSceneRects() const {
  return mLayout != nullptr ? mLayout->getSceneRects() : std::vector<Rect>();
}

std::shared_ptr<BaseLayout> BaseTrackingMode::makeLayout(FynOperatingMode /*mode*/) const {
  return mLayout;
}

std::string BaseTrackingMode::getName() const {
  return kTag;
}

}  // namespace fyn::productionrules
