#include "layouts/cycle/BaseLayout.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/LayoutComparison.h"
#include "layouts/cycle/LayoutDebugText.h"
#include "layouts/cycle/LayoutLog.h"
#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseLayout";

// The low half of an address, as the log prints it.
unsigned addressOf(const std::shared_ptr<Layout>& layout) {
  return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(layout.get()));
}

}  // namespace

BaseLayout::BaseLayout() : mTick(GetTicks), mTimerSetting(std::make_shared<BaseTimerSetting>()) {}

BaseLayout::~BaseLayout() = default;

const char* BaseLayout::getTag() const {
  return kTag;
}

std::string BaseLayout::getLayoutDataInJson() {
  return layoutDebugText(*mState.mCurLayout, mState.mNextLayout.get(), tick());
}

std::string BaseLayout::getDebugDataInJson() {
  if (mState.mCurLayout == nullptr) {
    return "{}";
  }
  return engineDebugText(getLayoutDataInJson(), mState.people, mLastFrameNumber, *mState.mCurLayout);
}

void BaseLayout::setTimerSetting(std::shared_ptr<BaseTimerSetting> setting) {
  mTimerSetting = std::move(setting);
}

std::shared_ptr<BaseTimerSetting>& BaseLayout::getTimerSetting() {
  return mTimerSetting;
}

void BaseLayout::setCurrentTimerTickFun(TickFunction tickFunction) {
  mTick = std::move(tickFunction);
}

// ---- The decision cycle ----

bool BaseLayout::applyingLayout(const std::shared_ptr<MLData>& mlData) {
  if (!verifyIfLayoutChangeNeeded(mlData)) {
    return false;
  }
  PRB_LOGI(kTag, "%s KORVALDEBUG  verifyIfLayoutChangeNeeded returned true, calling applyNewLayout()",
           "applyingLayout");
  applyNewLayout();
  return isLayoutValid();
}

bool BaseLayout::verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData) {
  PRB_LOGD(kTag, "%s Enter, with head size: %d ", "verifyIfLayoutChangeNeeded",
           static_cast<int>(mlData->getHeads().size()));
  mLastFrameNumber = mlData->frameNumber;
  reportInput(*mlData);
  mState.reason = "";
  const std::shared_ptr<Layout> candidate = createLayout(mlData);
  if (candidate != nullptr && candidate != mState.mCurLayout) {
    mState.reason = candidate->reason;
  }
  const LayoutComparison comparison = compareLayouts(mState.mCurLayout, candidate);
  if (!comparison.isDifferent()) {
    mState.differsSince.reset();
    dropPending("the scene went back");
    return false;
  }
  if (!mState.differsSince) {
    mState.differsSince = tick();
  }
  if (isDifferentLayout(mState.mNextLayout, candidate)) {
    if (!checkIfLayoutSwitchNeeded(candidate)) {
      PRB_LOGD(getTag(), "%s Layout switch is not needed", "verifyIfLayoutChangeNeeded");
      dropPending("no switch is needed");
      return false;
    }
    holdBack(candidate, comparison);
  }
  // A candidate that equals the waiting layout leaves its timer running: a steady scene is adopted after one
  // wait.
  return isPendingDue();
}

void BaseLayout::holdBack(const std::shared_ptr<Layout>& candidate, const LayoutComparison& comparison) {
  const bool peopleCountChanged =
      mState.mCurLayout == nullptr || mState.mCurLayout->faceCount != candidate->faceCount;
  mState.cause = {comparison};
  const std::uint32_t waitTime = getWaitTime(candidate, peopleCountChanged);
  candidate->layoutTimer = getTimer(waitTime, tick());
  mState.mNextLayout = candidate;
  updateLayoutWithStreamInfo(mState.mNextLayout, mState.streamId);
  PRB_LOGI(kTag, "KORVALDEBUG new layout is different than any previous layout waitTime: %d",
           static_cast<int>(waitTime));
  reportChange(DecisionKind::Pending, mState.mCurLayout.get(), *mState.mNextLayout,
               mState.mNextLayout->layoutTimer);
}

bool BaseLayout::isPendingDue() {
  if (mState.mNextLayout == nullptr || !isTimerExpire(mState.mNextLayout->layoutTimer, mTick) ||
      !mayAdopt(*mState.mNextLayout)) {
    return false;
  }
  PRB_LOGI(kTag, "KORVALDEBUG Timer expired, need to change layout");
  return true;
}

bool BaseLayout::mayAdopt(const Layout& /*due*/) const {
  return true;
}

void BaseLayout::dropPending(const char* why) {
  if (mState.mNextLayout != nullptr && hasDecisionListener()) {
    LayoutDecision decision = describe(DecisionKind::Dropped, mState.mCurLayout.get(), *mState.mNextLayout);
    decision.reason = decision.reason.empty() ? why : std::string(why) + " (" + decision.reason + ")";
    addWait(decision, mState.mNextLayout->layoutTimer);
    decide(decision);
  }
  mState.mNextLayout = nullptr;
}

void BaseLayout::applyNewLayout() {
  if (mState.mNextLayout == nullptr) {
    PRB_LOGE(kTag, "%s() mNextLayout is nullptr", "applyNewLayout");
    return;
  }
  const std::string animation = getLayoutChangeAnimation();
  setLayoutAnimation(mState.mNextLayout, animation, static_cast<int>(getLayoutChangeDuration(animation)));
  const Timer wait = mState.mNextLayout->layoutTimer;
  // Only the layout's own timer: the frames keep theirs, so a frame that was due stays due.
  resetTimer(mState.mNextLayout->layoutTimer);
  PRB_LOGD(kTag, "BaseLayout::%s currentLayout: %x nextLayout: %x setting and calling updateLayoutViews()",
           "applyNewLayout", addressOf(mState.mCurLayout), addressOf(mState.mNextLayout));
  const std::shared_ptr<Layout> previous =
      std::exchange(mState.mCurLayout, std::exchange(mState.mNextLayout, nullptr));
  mState.adoptedBefore += previous != nullptr ? 1U : 0U;
  mState.adoptedAt = tick();
  mState.differsSince.reset();
  updateLayoutViews(false);
  if (const auto fitting = previous != nullptr ? transitionFrom(*previous) : std::nullopt) {
    setLayoutAnimation(mState.mCurLayout, *fitting, static_cast<int>(getLayoutChangeDuration(*fitting)));
  }
  printLayoutToLog(mState.mCurLayout, "New-People-Layout: ");
  reportChange(DecisionKind::Adopted, previous.get(), *mState.mCurLayout, wait);
}

bool BaseLayout::updateLayoutFraming() {
  if (!updateCurrentTimer()) {
    return false;
  }
  PRB_LOGI(kTag, "%s KORVALDEBUG updateCurrentTimer returned true, calling updateLayoutViews() from %s",
           "updateLayoutFraming", getTag());
  updateLayoutViews(true);
  printLayoutToLog(mState.mCurLayout, "KORVALDEBUG New-Centering-Layout: ");
  return true;
}

bool BaseLayout::updateFeedPriorityOfFrame() {
  return false;
}

bool BaseLayout::isLayoutValid() {
  return true;
}

bool BaseLayout::checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& /*candidate*/) {
  return true;
}

bool BaseLayout::applySecondaryLayout(const std::shared_ptr<Layout>& layout) {
  if (layout == nullptr || (PrConfig::get().fpBeta1Enabled && isNoneLayout(layout))) {
    PRB_LOGE(kTag, "%s layout is nullptr or the LAYOUT WAS Zeros ", "applySecondaryLayout");
    return false;
  }
  resetTimer(layout->layoutTimer);
  const std::shared_ptr<Layout> previous = std::exchange(mState.mCurLayout, layout);
  updateLayoutViews(false);
  printLayoutToLog(mState.mCurLayout, "New-Secondary-People-Layout: ");
  if (hasDecisionListener()) {
    decide(describe(DecisionKind::Secondary, previous.get(), *mState.mCurLayout));
  }
  return true;
}

bool BaseLayout::isNoneLayout(const std::shared_ptr<Layout>& layout) {
  for (const Frame& frame : layout->frames) {
    if (!isZeroRect(frame.source)) {
      PRB_LOGI(kTag, "%s KORVALDEBUG isNoneLayout: %d", "isNoneLayout", 0);
      return false;
    }
  }
  PRB_LOGI(kTag, "%s KORVALDEBUG isNoneLayout: %d", "isNoneLayout", 1);
  return true;
}

void BaseLayout::resetLayouts() {
  if (mState.mCurLayout != nullptr && hasDecisionListener()) {
    Layout none;
    none.streamId = mState.mCurLayout->streamId;
    decide(describe(DecisionKind::Reset, mState.mCurLayout.get(), none));
  }
  mState.forgetLayouts();
}

bool BaseLayout::process(const std::shared_ptr<MLData>& /*mlData*/) {
  PRB_LOGE(kTag, "%s() Should not have been invoked !!", "process");
  return false;
}

// ---- Reports ----

void BaseLayout::printLayoutToLog(const std::shared_ptr<Layout>& layout, const std::string& prefix) {
  logLayout(layout, prefix, mState.people);
}

void BaseLayout::printFrameViews(const std::vector<Frame>& frames) const {
  logFrameViews(frames);
}

void BaseLayout::printFrameHeads(const std::shared_ptr<Layout>& layout) const {
  logFrameHeads(*layout, mState.people);
}

void BaseLayout::reportChange(DecisionKind kind, const Layout* from, const Layout& to,
                              const Timer& wait) const {
  if (!hasDecisionListener()) {
    return;
  }
  LayoutDecision decision = describe(kind, from, to);
  decision.difference = mState.cause.comparison.difference;
  decision.frameIndex = mState.cause.comparison.frameIndex;
  addWait(decision, wait);
  decide(decision);
}

void BaseLayout::addWait(LayoutDecision& decision, const Timer& wait) const {
  nameWait(decision, mState.cause.source);
  decision.configuredMs = mState.cause.configuredMs;
  decision.reductionMs = mState.cause.reductionMs;
  decision.waitMs = wait.duration;
  decision.waitedMs = wait.isStarted() ? tick() - wait.startTicks : 0;
}

LayoutDecision BaseLayout::describe(DecisionKind kind, const Layout* from, const Layout& to) const {
  LayoutDecision decision;
  decision.kind = kind;
  decision.streamId = to.streamId;
  decision.from = from == nullptr ? FramingType::NONE : from->layoutType;
  decision.to = to.layoutType;
  decision.reason = mState.reason;
  for (const Frame& frame : to.frames) {
    decision.people.insert(decision.people.end(), frame.fynHeads.begin(), frame.fynHeads.end());
  }
  std::sort(decision.people.begin(), decision.people.end());
  return decision;
}

}  // namespace fyn::productionrules
