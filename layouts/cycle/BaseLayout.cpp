#include "layouts/cycle/BaseLayout.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/GroupLayout.h"
#include "geometry/LayoutComparison.h"
#include "geometry/LayoutDescription.h"
#include "layouts/cycle/LayoutDebugText.h"
#include "model/FynCamerasConfig.h"
#include "platform/Clock.h"
#include "platform/SystemEnvironment.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseLayout";
constexpr Rect kWholeOutput{0, 0, kOutputSize.width, kOutputSize.height};

// Milliseconds after which the people count is published although it has not changed.
constexpr std::uint64_t kPeopleCountPeriod = 5000;

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
  return layoutDebugText(*mState.current, mState.pending.get(), tick());
}

std::string BaseLayout::getDebugDataInJson() {
  if (mState.current == nullptr) {
    return "{}";
  }
  return engineDebugText(getLayoutDataInJson(), mState.people, mLastFrameNumber, *mState.current);
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
  const std::shared_ptr<Layout> candidate = createLayout(mlData);
  mState.reason = candidate != nullptr ? candidate->reason : "";
  if (!isDifferentLayout(mState.current, candidate)) {
    dropPending(LayoutDifference::None);
    return false;
  }
  if (isDifferentLayout(mState.pending, candidate)) {
    if (!checkIfLayoutSwitchNeeded(candidate)) {
      PRB_LOGD(getTag(), "%s Layout switch is not needed", "verifyIfLayoutChangeNeeded");
      dropPending(LayoutDifference::NoSwitchNeeded);
      return false;
    }
    const bool peopleCountChanged =
        mState.current == nullptr || mState.current->faceCount != candidate->faceCount;
    mState.chosenTimer = "";
    const std::uint32_t waitTime = getWaitTime(candidate, peopleCountChanged);
    candidate->layoutTimer = getTimer(waitTime, tick());
    mState.pending = candidate;
    updateLayoutWithStreamInfo(mState.pending, mState.streamId);
    PRB_LOGI(kTag, "KORVALDEBUG new layout is different than any previous layout waitTime: %d",
             static_cast<int>(waitTime));
    reportLayout(DecisionKind::Pending, mState.current.get(), *mState.pending, {},
                 mState.pending->layoutTimer, 0);
  }
  // A candidate that equals the waiting layout leaves its timer running: a steady scene is adopted after one
  // wait.
  if (mState.pending == nullptr || !isTimerExpire(mState.pending->layoutTimer, mTick)) {
    return false;
  }
  PRB_LOGI(kTag, "KORVALDEBUG Timer expired, need to change layout");
  return true;
}

void BaseLayout::dropPending(LayoutDifference why) {
  if (mState.pending != nullptr) {
    const std::uint32_t waitedMs = tick() - mState.pending->layoutTimer.startTicks;
    reportLayout(DecisionKind::Dropped, mState.current.get(), *mState.pending, why,
                 mState.pending->layoutTimer, waitedMs);
  }
  mState.pending = nullptr;
}

void BaseLayout::applyNewLayout() {
  if (mState.pending == nullptr) {
    PRB_LOGE(kTag, "%s() mNextLayout is nullptr", "applyNewLayout");
    return;
  }
  const std::string animation = getLayoutChangeAnimation();
  setLayoutAnimation(mState.pending, animation, static_cast<int>(getLayoutChangeDuration(animation)));
  const Timer wait = mState.pending->layoutTimer;
  const std::uint32_t waitedMs = wait.isStarted() ? tick() - wait.startTicks : 0;
  // Only the layout's own timer: the frames keep theirs, so a frame that was due stays due.
  resetTimer(mState.pending->layoutTimer);
  PRB_LOGD(kTag, "BaseLayout::%s currentLayout: %x nextLayout: %x setting and calling updateLayoutViews()",
           "applyNewLayout", addressOf(mState.current), addressOf(mState.pending));
  const std::shared_ptr<Layout> previous =
      std::exchange(mState.current, std::exchange(mState.pending, nullptr));
  updateLayoutViews(false);
  printLayoutToLog(mState.current, "New-People-Layout: ");
  reportLayout(DecisionKind::Adopted, previous.get(), *mState.current, {}, wait, waitedMs);
}

bool BaseLayout::updateLayoutFraming() {
  if (!updateCurrentTimer()) {
    return false;
  }
  PRB_LOGI(kTag, "%s KORVALDEBUG updateCurrentTimer returned true, calling updateLayoutViews() from %s",
           "updateLayoutFraming", getTag());
  updateLayoutViews(true);
  printLayoutToLog(mState.current, "KORVALDEBUG New-Centering-Layout: ");
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
  const std::shared_ptr<Layout> previous = std::exchange(mState.current, layout);
  updateLayoutViews(false);
  printLayoutToLog(mState.current, "New-Secondary-People-Layout: ");
  reportLayout(DecisionKind::Secondary, previous.get(), *mState.current, {}, {}, 0);
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
  if (mState.current != nullptr && hasDecisionListener()) {
    Layout none;
    none.streamId = mState.current->streamId;
    reportLayout(DecisionKind::Reset, mState.current.get(), none, {}, {}, 0);
  }
  mState.forgetLayouts();
}

bool BaseLayout::process(const std::shared_ptr<MLData>& /*mlData*/) {
  PRB_LOGE(kTag, "%s() Should not have been invoked !!", "process");
  return false;
}

// ---- Candidates ----

void BaseLayout::reportInput(const MLData& /*data*/) {}

std::shared_ptr<Layout> BaseLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  auto layout = std::make_shared<Layout>();
  const std::vector<std::shared_ptr<FynHead>>& heads = mlData->getHeads();
  layout->layoutType = getLayoutTypeForGroupFrame(static_cast<int>(heads.size()));
  constructGroupLayout(heads, layout, static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId));
  layout->frameNumber = mlData->frameNumber;
  layout->faceCount = static_cast<std::int32_t>(heads.size());
  fillPositionRect(layout);
  return layout;
}

FramingType BaseLayout::getLayoutTypeForGroupFrame(int headCount) {
  if (headCount == 0) {
    return FramingType::ROOM;
  }
  return headCount == 1 ? FramingType::HEAD : FramingType::GROUP;
}

void BaseLayout::fillPositionRect(std::shared_ptr<Layout>& layout) {
  if (layout->frames.empty()) {
    return;
  }
  Frame& frame = layout->frames.front();
  frame.dest = kWholeOutput;
  if (layout->layoutType == FramingType::PROXIMITY) {
    frame.frameLayout = kFrameLayoutProximitySingleWide;
  } else if (layout->layoutType == FramingType::HEAD) {
    frame.frameLayout = kFrameLayoutHeadSingle;
  }
}

// ---- Streams ----

void BaseLayout::updateLayoutWithStreamInfo(std::shared_ptr<Layout>& layout, unsigned streamId) {
  layout->streamId = static_cast<std::int32_t>(streamId);
  layout->isLogicalStream = layout->streamId < 1;
  PRB_LOGD(kTag, "%s Layout's StreamID: %d, isLogical: %d", "updateLayoutWithStreamInfo", layout->streamId,
           static_cast<int>(layout->isLogicalStream));
}

void BaseLayout::setDisplayLayoutStreamIDS(std::vector<unsigned> ids) {
  if (ids.empty()) {
    return;
  }
  mDisplayStreamIds = std::move(ids);
  mLayoutCount = static_cast<unsigned>(mDisplayStreamIds.size());
  PRB_LOGD(kTag, "%s Layout's Total Layout Count %d", "setDisplayLayoutStreamIDS",
           static_cast<int>(mLayoutCount));
}

// Deliberately not the argument: this engine makes one layout.
void BaseLayout::setMaxLayouts(unsigned /*count*/) {
  mLayoutCount = 1;
}

std::vector<std::shared_ptr<Layout>> BaseLayout::getFinalLayoutPtrs() const {
  return {mState.current};
}

std::vector<std::shared_ptr<Layout>> BaseLayout::getNextLayoutPtrs() const {
  return {mState.pending};
}

std::vector<Rect> BaseLayout::getSceneRects() const {
  std::vector<Rect> rects;
  if (mState.current == nullptr) {
    return rects;
  }
  rects.reserve(mState.current->frames.size());
  for (const Frame& frame : mState.current->frames) {
    rects.push_back(frame.source);
  }
  return rects;
}

// ---- People ----

void BaseLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  const std::vector<std::shared_ptr<FynHead>>& heads = mlData->getHeads();
  const int known = static_cast<int>(mState.people.size());
  const int seen = static_cast<int>(heads.size());
  if (known != seen) {
    PRB_LOGI(kTag, "%s: KORVALDEBUG PEOPLE COUNT CHANGED  current: %d new: %d", "updatePeopleMap", known,
             seen);
  }
  // A map of its own, not the old one cleared: the order of the dump must not depend on who was here before.
  PeopleMap people;
  for (const std::shared_ptr<FynHead>& person : heads) {
    people.emplace(person->id, person);
  }
  mState.people = std::move(people);
}

unsigned BaseLayout::getPeopleCount() {
  return static_cast<unsigned>(mState.people.size());
}

bool BaseLayout::shouldPublishUpdatedPeopleCount(const std::shared_ptr<MLData>& mlData) {
  if (mState.people.size() != mlData->getHeads().size()) {
    return true;
  }
  const std::uint32_t now = GetTicks();
  // In 64 bits, so that a wrapped clock counts as elapsed.
  if (std::uint64_t{now} - std::uint64_t{processTimes().lastPeopleCountSend} < kPeopleCountPeriod) {
    return false;
  }
  processTimes().lastPeopleCountSend = now;
  return true;
}

PeopleMap& BaseLayout::getHeadMapForGroup(const Frame& /*frame*/) {
  return mState.people;
}

// ---- Reports ----

void BaseLayout::printLayoutToLog(const std::shared_ptr<Layout>& layout, const std::string& prefix) {
  if (layout == nullptr) {
    PRB_LOGW(kTag, "%s %s layout is null", "printLayoutToLog", prefix.c_str());
    return;
  }
  PRB_LOGI(kTag, "%s, %s %s", "printLayoutToLog", prefix.c_str(),
           convertLayoutToString(layout, mState.people).c_str());
}

void BaseLayout::printFrameViews(const std::vector<Frame>& frames) const {
  for (const Frame& frame : frames) {
    PRB_LOGI(kTag, "%s FrameView [%d, %d, %d, %d] ", "printFrameViews", frame.source.left, frame.source.top,
             frame.source.right, frame.source.bottom);
  }
}

void BaseLayout::printFrameHeads(const std::shared_ptr<Layout>& layout) const {
  PRB_LOGI(kTag, "%s() DUMP layoutType %d", "printFrameHeads", static_cast<int>(layout->layoutType));
  for (const Frame& frame : layout->frames) {
    for (const std::int64_t id : frame.fynHeads) {
      const auto person = mState.people.find(id);
      const Head* const head =
          person == mState.people.end() ? nullptr : person->second->findHead(FynHead::kNoCamera);
      if (head == nullptr) {
        PRB_LOGI(kTag, "%s(): People left", "printFrameHeads");
        continue;
      }
      PRB_LOGI(kTag, "%s FrameHead [%d, %d, %d, %d] ", "printFrameHeads", head->bbox.left, head->bbox.top,
               head->bbox.right, head->bbox.bottom);
    }
  }
}

void BaseLayout::reportLayout(DecisionKind kind, const Layout* from, const Layout& to,
                              LayoutDifference difference, const Timer& wait, std::uint32_t waitedMs) const {
  if (!hasDecisionListener()) {
    return;
  }
  LayoutDecision decision;
  decision.kind = kind;
  decision.streamId = to.streamId;
  decision.from = from == nullptr ? FramingType::NONE : from->layoutType;
  decision.to = to.layoutType;
  decision.difference = difference;
  decision.reason = mState.reason;
  if (kind == DecisionKind::Pending || kind == DecisionKind::Adopted) {
    decision.difference = findLayoutDifference(from, to);
    decision.timer = mState.chosenTimer;
  }
  decision.waitMs = wait.duration;
  decision.waitedMs = waitedMs;
  for (const Frame& frame : to.frames) {
    decision.people.insert(decision.people.end(), frame.fynHeads.begin(), frame.fynHeads.end());
  }
  std::sort(decision.people.begin(), decision.people.end());
  mDecisionListener->onDecision(decision);
}

}  // namespace fyn::productionrules
