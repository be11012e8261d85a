// The part of BaseLayout that waits: where a frame's subject stands and how long it may, and how long a new
// layout waits and how it comes.
#include <sstream>

#include "config/PrConfig.h"
#include "geometry/Proximity.h"
#include "layouts/cycle/BaseLayout.h"
#include "layouts/cycle/HeadPositions.h"
#include "layouts/cycle/SingleHeadTimerSetting.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseLayout";

// The wait that a head position calls for; null for none.
WaitField reframeWait(HeadPosition position) {
  const WaitField ofGroup = BaseTimerSetting::groupReframeWait(position);
  return ofGroup != nullptr ? ofGroup : SingleHeadTimerSetting::singleHeadWait(position);
}

}  // namespace

// ---- Where a frame's subject stands ----

HeadPosition BaseLayout::getHeadPosition(const Frame& frame) {
  Rect box;
  return constructBoundingBox(frame, box, false) ? singleHeadPosition(box, frame) : HeadPosition::CENTER;
}

HeadPosition BaseLayout::getProximityHeadPosition(const Frame& frame) {
  Rect box;
  return constructBoundingBox(frame, box, false) ? neighboursPosition(box, frame) : HeadPosition::CENTER;
}

HeadPosition BaseLayout::getGroupHeadPosition(const Frame& frame) {
  return groupPosition(getGroupHeadBounds(frame), frame);
}

HeadPosition BaseLayout::getCurrentHeadPosition(const Frame& frame) {
  switch (frame.frameType) {
    case FramingType::PROXIMITY:
      return isProximityMaintained(frame, mState.people) ? getProximityHeadPosition(frame)
                                                         : HeadPosition::CENTER;
    case FramingType::GROUP:
    case FramingType::SUBSET_SPEAKER:
      return getGroupHeadPosition(frame);
    case FramingType::ROOM:
      return HeadPosition::CENTER;
    default:
      return getHeadPosition(frame);
  }
}

// ---- Reframe waits ----

std::uint32_t BaseLayout::getWaitTimeFor(HeadPosition position) {
  if (const WaitField ofGroup = BaseTimerSetting::groupReframeWait(position)) {
    return waitForGroup(position, (*getTimerSetting()).*ofGroup);
  }
  return position == HeadPosition::CENTER ? 0 : getWaitTimeForOtherCase(position);
}

std::uint32_t BaseLayout::waitForGroup(HeadPosition /*position*/, std::uint32_t waitMs) {
  return waitMs;
}

std::uint32_t BaseLayout::getWaitTimeForOtherCase(HeadPosition position) {
  PRB_LOGI(kTag, "%s() KORVALDEBUG head position %s WE SHUDNT COME HERE! ", "getWaitTimeForOtherCase",
           headPositionText(position));
  return 0;
}

std::uint32_t BaseLayout::waitForSingleHead(HeadPosition position) {
  const auto* const setting = timerSettingAs<SingleHeadTimerSetting>();
  const WaitField wait = SingleHeadTimerSetting::singleHeadWait(position);
  return setting != nullptr && wait != nullptr ? setting->*wait : 0;
}

bool BaseLayout::updateCurrentTimer() {
  if (mState.mCurLayout == nullptr) {
    return false;
  }
  bool reframe = false;
  for (std::size_t index = 0; index < mState.mCurLayout->frames.size(); ++index) {
    Frame& frame = mState.mCurLayout->frames[index];
    reframe |= updateFrameTimer(index, frame, getCurrentHeadPosition(frame));
  }
  return reframe;
}

bool BaseLayout::updateFrameTimer(std::size_t index, Frame& frame, HeadPosition position) {
  if (position == HeadPosition::CENTER) {
    if (frame.headPositionTimer.isStarted()) {
      reportFrame(DecisionKind::ReframeCancelled, index, frame, tick() - frame.headPositionTimer.startTicks);
    }
    frame.headPosition = HeadPosition::CENTER;
    resetTimer(frame.headPositionTimer);
    return false;
  }
  if (position != frame.headPosition) {
    startFrameTimer(index, frame, position);
    return false;
  }
  if (!isTimerExpire(frame.headPositionTimer, mTick)) {
    return false;
  }
  // The timer stays as it is: updateLayoutViews sees by it that the frame is due.
  setLayoutAnimation(mState.mCurLayout, getReframeAnimation(position),
                     static_cast<int>(getReframeAnimationDuration(position)));
  return true;
}

void BaseLayout::startFrameTimer(std::size_t index, Frame& frame, HeadPosition position) {
  frame.headPosition = position;
  const std::uint32_t waitTime = getWaitTimeFor(position);
  if (waitTime == kInvalidTimer) {
    resetTimer(frame.headPositionTimer);
    PRB_LOGW(kTag,
             "%s() KORVALDEBUG INVALID TIMER resetting timer frameType: %s, head position %s current head "
             "position "
             "%s, waitTime: %d",
             "updateCurrentTimer", layoutToText(frame.frameType), headPositionText(frame.headPosition),
             headPositionText(position), static_cast<int>(waitTime));
    return;
  }
  mState.mCurLayout->reframeFrameNumber = mLastFrameNumber;
  frame.headPositionTimer = getTimer(waitTime, tick());
  PRB_LOGI(kTag,
           "%s() KORVALDEBUG setting timer for frameType: %s, head position %s current head position %s, "
           "waitTime: "
           "%d",
           "updateCurrentTimer", layoutToText(frame.frameType), headPositionText(frame.headPosition),
           headPositionText(position), static_cast<int>(waitTime));
  reportFrame(DecisionKind::ReframeWait, index, frame, 0);
}

bool BaseLayout::isThereATimerRunning() const {
  return isTimerRunning(mState.mCurLayout.get(), mState.mNextLayout.get());
}

bool BaseLayout::isTimerRunning(const Layout* current, const Layout* next) {
  if (current != nullptr) {
    if (current->layoutTimer.isStarted()) {
      return true;
    }
    for (const Frame& frame : current->frames) {
      if (frame.headPositionTimer.isStarted() || frame.feedPriorityTimer.isStarted()) {
        return true;
      }
    }
  }
  return next != nullptr && next->layoutTimer.isStarted();
}

// ---- Layout change waits and transitions ----

std::uint32_t BaseLayout::getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) {
  return mState.mCurLayout == nullptr ? 0 : getLayoutChangeTimer(candidate->layoutType, peopleCountChanged);
}

std::uint32_t BaseLayout::getLayoutChangeTimer(FramingType newType, bool peopleCountChanged) {
  if (mState.mCurLayout == nullptr) {
    return 0;
  }
  if (mState.mCurLayout->layoutType == FramingType::GROUP) {
    return getGroupLayoutChangeTimer(newType);
  }
  std::stringstream explanation;
  explanation << "getLayoutChangeTimer: ";
  return getOtherLayoutChangeTimer(newType, explanation, peopleCountChanged);
}

std::uint32_t BaseLayout::getGroupLayoutChangeTimer(FramingType newType) {
  return newType == FramingType::GROUP ? 0 : chooseWait(&BaseTimerSetting::gfToOtherLayoutChangeTimer);
}

std::uint32_t BaseLayout::getOtherLayoutChangeTimer(FramingType newType, std::stringstream& /*explanation*/,
                                                    bool /*peopleCountChanged*/) {
  return newType == mState.mCurLayout->layoutType
             ? 0
             : chooseWait(&BaseTimerSetting::roomToOtherLayoutChangeTimer);
}

std::uint32_t BaseLayout::chooseWait(WaitField wait) {
  const BaseTimerSetting& setting = *getTimerSetting();
  mState.cause.source = setting.findSource(wait);
  mState.cause.configuredMs = setting.*wait;
  return setting.*wait;
}

std::uint32_t BaseLayout::shortenWait(std::uint32_t ms, std::uint32_t reductionMs) {
  mState.cause.reductionMs = reductionMs;
  const auto wait = static_cast<std::int32_t>(ms - reductionMs);
  if (wait < 0) {
    PRB_LOGE(getTag(), "Invalid wait time for layout change, wt: %d", wait);
    return 0;
  }
  return static_cast<std::uint32_t>(wait);
}

std::string BaseLayout::getLayoutChangeAnimation() {
  return PrConfig::get().animationCutOnly ? "cut" : "dissolve";
}

std::optional<std::string> BaseLayout::transitionFrom(const Layout& /*before*/) const {
  return std::nullopt;
}

std::uint32_t BaseLayout::getLayoutChangeDuration(const std::string& animation) {
  const PrConfig& config = PrConfig::get();
  std::int32_t duration = 0;
  if (animation == "cut") {
    duration = config.cutAnimationDuration;
  } else if (animation == "dissolve") {
    duration = config.dissolveAnimationDuration;
  } else if (animation == "ease") {
    duration = config.easeAnimationDuration;
  }
  return static_cast<std::uint32_t>(duration);
}

std::string BaseLayout::getReframeAnimation(HeadPosition /*position*/) {
  return "cut";
}

std::uint32_t BaseLayout::getReframeAnimationDuration(HeadPosition position) {
  return getLayoutChangeDuration(getReframeAnimation(position));
}

void BaseLayout::reportFrame(DecisionKind kind, std::size_t index, const Frame& frame,
                             std::uint32_t waitedMs) const {
  if (!hasDecisionListener()) {
    return;
  }
  LayoutDecision decision;
  decision.kind = kind;
  decision.streamId = mState.mCurLayout->streamId;
  decision.from = frame.frameType;
  decision.to = frame.frameType;
  nameWait(decision, mTimerSetting->findSource(reframeWait(frame.headPosition)));
  decision.configuredMs = frame.headPositionTimer.duration;
  decision.waitMs = frame.headPositionTimer.duration;
  decision.waitedMs = waitedMs;
  decision.frameIndex = static_cast<std::int32_t>(index);
  decision.headPosition = frame.headPosition;
  mDecisionListener->onDecision(decision);
}

}  // namespace fyn::productionrules
