// The part of BaseLayout that watches single frames between layout changes: where a frame's subject stands,
// how long it may stand there, and the new view.
#include <array>
#include <sstream>

#include "config/PrConfig.h"
#include "geometry/FramePredicates.h"
#include "geometry/GroupFrame.h"
#include "geometry/HeadBuffer.h"
#include "geometry/OffCenter.h"
#include "geometry/Proximity.h"
#include "geometry/RectMath.h"
#include "geometry/RuleOfThirds.h"
#include "layouts/cycle/BaseLayout.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseLayout";

int cameraOf(const Frame& frame) {
  return static_cast<int>(frame.fynCamId);
}

// The wait of the timer setting that a head position calls for.
const char* reframeTimerName(HeadPosition position) {
  static constexpr std::array<const char*, 9> kNames{
      "onFrameEdgeTimer", "offCenterTimer", "outsideFrameTimer", "", "gfMoveCloseTimer",
      "gfHeadLeft",       "gfHeadOnEdge",   "gfHeadOutside",     ""};
  const auto index = static_cast<std::size_t>(position);
  return index < kNames.size() ? kNames[index] : "";
}

HeadPosition edgePosition(const Rect& box, const Frame& frame) {
  if (isOutsideEdge(box, frame.source)) {
    return HeadPosition::HEAD_OUTSIDE;
  }
  return isOnFrameEdge(box, frame.source) ? HeadPosition::HEAD_ON_EDGE : HeadPosition::CENTER;
}

}  // namespace

// ---- Views ----

void BaseLayout::updateLayoutViews(bool fromFrameTimer) {
  if (mState.current == nullptr) {
    return;
  }
  std::vector<Frame>& frames = mState.current->frames;
  PRB_LOGD(kTag, "%s() layoutType: %s frame size: %d heads: %d mlSize: %d", "updateLayoutViews",
           layoutToText(mState.current->layoutType), static_cast<int>(frames.size()),
           frames.empty() ? -1 : static_cast<int>(frames.front().heads.size()),
           static_cast<int>(getPeopleCount()));
  const bool creatingNewLayout = !fromFrameTimer;
  for (std::size_t index = 0; index < frames.size(); ++index) {
    Frame& frame = frames[index];
    if (!isFrameDue(frame, creatingNewLayout)) {
      PRB_LOGD(kTag, "%s() timer didn't expire for frameType: %s , skipping the frame", "updateLayoutViews",
               layoutToText(frame.frameType));
      continue;
    }
    PRB_LOGI(
        kTag,
        "%s() frametype: %s  Need to update the view of frame[%d], are we creating new layout --> %s, else "
        "frame timer has expired for head position %s",
        "updateLayoutViews", layoutToText(frame.frameType), static_cast<int>(index),
        creatingNewLayout ? "yes" : "no", headPositionText(frame.headPosition));
    const std::uint32_t waitedMs = fromFrameTimer && frame.headPositionTimer.isStarted()
                                       ? tick() - frame.headPositionTimer.startTicks
                                       : 0;
    updateFrameView(frame);
    if (fromFrameTimer) {
      reportFrame(DecisionKind::Reframed, index, frame, waitedMs);
    }
    resetTimer(frame.headPositionTimer);
    frame.headPosition = HeadPosition::CENTER;
  }
}

bool BaseLayout::isFrameDue(Frame& frame, bool creatingNewLayout) {
  return isTimerExpire(frame.feedPriorityTimer, mTick) || isTimerExpire(frame.headPositionTimer, mTick) ||
         creatingNewLayout;
}

void BaseLayout::updateFrameView(Frame& frame) {
  switch (frame.frameType) {
    case FramingType::GROUP:
    case FramingType::PARTIAL_GROUP:
    case FramingType::SUBSET_SPEAKER:
      calculateGroupFraming(frame);
      break;
    case FramingType::HEAD:
    case FramingType::PROXIMITY:
      calculateRuleOfThirdFor(frame);
      break;
    case FramingType::ROOM:
      frame.source = kRoomView;
      break;
    default:
      handleInvalidFrame(frame);
      break;
  }
}

void BaseLayout::handleInvalidFrame(const Frame& frame) {
  PRB_LOGE(kTag, "Unable to handle Frame Type: %d", static_cast<int>(frame.frameType));
}

void BaseLayout::calculateGroupFraming(Frame& frame) {
  PRB_LOGD(kTag, "%s before calling getGroupHeadBounds() heads: %d mlData size: %d camId: %d",
           "calculateGroupFraming", static_cast<int>(frame.heads.size()), static_cast<int>(getPeopleCount()),
           cameraOf(frame));
  frame.fynHeads.clear();
  for (const auto& [id, person] : mState.people) {
    // The id of the head and not of the person: readers of a group frame rely on it.
    if (const Head* const head = person->findHead(FynHead::kNoCamera)) {
      frame.fynHeads.insert(head->id);
    }
  }
  GroupFrame::updateGroupFrameLayout(getGroupHeadBounds(frame), frame, "BaseLayout::calculateGroupFraming",
                                     getCameraLensModelDimension(cameraOf(frame)),
                                     static_cast<int>(getMaxScaleFactor()));
  PRB_LOGD(kTag, "%s frame layouttype: %s heads: %d assigning frame.view to [%d %d %d %d]",
           "calculateGroupFraming", layoutToText(frame.frameType), static_cast<int>(frame.heads.size()),
           frame.source.left, frame.source.top, frame.source.right, frame.source.bottom);
}

std::vector<Rect> BaseLayout::getGroupHeadBounds(const Frame& frame) {
  std::vector<Rect> bounds;
  bounds.reserve(mState.people.size());
  for (const auto& [id, person] : mState.people) {
    if (const Head* const head = person->findHead(frame.fynCamId)) {
      bounds.push_back(head->bbox);
    }
  }
  return bounds;
}

void BaseLayout::calculateRuleOfThirdFor(Frame& frame) {
  Rect box;
  if (!constructBoundingBox(frame, box, false)) {
    return;
  }
  const RuleOfThirdsView view = ruleOfThirdsView(frame, box);
  frame.source = view.source;
  frame.detectionBoundary = view.detectionBoundary;
}

RuleOfThirdsView BaseLayout::ruleOfThirdsView(const Frame& frame, const Rect& box) {
  const Rect base = getBaseRectForRuleofThirdsFrame(frame, box);
  return {getRuleOfThirdFrame(base, widthOf(frame.dest), heightOf(frame.dest), frame.frameLayout,
                              getImageSize(frame), static_cast<int>(getMaxScaleFactor())),
          base};
}

Rect BaseLayout::getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box) {
  return getHeadBufferRect(box, getCameraLensModelDimension(cameraOf(frame)));
}

Dimension BaseLayout::getImageSize(const Frame& frame) {
  return frame.fynCamId == FynHead::kNoCamera
             ? kDefaultImageSize
             : FynCamerasConfig::get().getCameraLensModelDimension(cameraOf(frame));
}

unsigned BaseLayout::getMaxScaleFactor() {
  return 0;
}

bool BaseLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  std::vector<Rect> bounds;
  bounds.reserve(frame.fynHeads.size());
  for (const std::int64_t id : frame.fynHeads) {
    const auto person = mState.people.find(id);
    if (person == mState.people.end()) {
      return false;
    }
    const Head* const head = person->second->findHead(frame.fynCamId);
    if (head == nullptr || isZeroRect(head->bbox)) {
      reportMissingHead(frame, id, head);
      return false;
    }
    const bool buffered = withHeadBuffer && frame.frameType == FramingType::PROXIMITY;
    bounds.push_back(buffered ? getHeadBufferRect(head->bbox, getCameraLensModelDimension(cameraOf(frame)))
                              : head->bbox);
  }
  getBoundaries(bounds, box.left, box.right, box.top, box.bottom);
  return true;
}

void BaseLayout::reportMissingHead(const Frame& frame, std::int64_t personId, const Head* head) {
  if (head == nullptr) {
    PRB_LOGE(kTag, "%s: HEAD  %d NOT IN CAMERA %d, why did this not get caught by layout change?",
             "constructBoundingBox", static_cast<int>(personId), cameraOf(frame));
    return;
  }
  PRB_LOGE(kTag, "%s: FynHead:%d, associatec camID: %d 's headID %d BOUND [0,0,0,0]", "constructBoundingBox",
           static_cast<int>(personId), cameraOf(frame), static_cast<int>(head->id));
}

// ---- Where a frame's subject stands ----

HeadPosition BaseLayout::getHeadPosition(const Frame& frame) {
  Rect box;
  if (!constructBoundingBox(frame, box, false)) {
    return HeadPosition::CENTER;
  }
  const HeadPosition position = edgePosition(box, frame);
  if (position != HeadPosition::CENTER) {
    return position;
  }
  return isOffCenter(box, frame.source, frame.frameLayout) ? HeadPosition::HEAD_OFF_CENTER
                                                           : HeadPosition::CENTER;
}

HeadPosition BaseLayout::getProximityHeadPosition(const Frame& frame) {
  Rect box;
  return constructBoundingBox(frame, box, false) ? edgePosition(box, frame) : HeadPosition::CENTER;
}

HeadPosition BaseLayout::getGroupHeadPosition(const Frame& frame) {
  const std::vector<Rect> bounds = getGroupHeadBounds(frame);
  if (isGFHeadOutside(frame.source, bounds)) {
    return HeadPosition::GROUP_HEAD_OUTSIDE;
  }
  if (isGFHeadOnEdge(frame.source, bounds)) {
    return HeadPosition::GROUP_HEAD_ON_EDGE;
  }
  if (frame.heads.size() > bounds.size()) {
    return HeadPosition::GROUP_HEAD_LEFT;
  }
  if (bounds.empty()) {
    PRB_LOGW(kTag, "%s heads are empty, returning head position CENTER", "getGroupHeadPosition");
    return HeadPosition::CENTER;
  }
  const Rect boundary = GroupFrame::getGroupDetectionBoundary(bounds, "BaseLayout::getGroupHeadPosition",
                                                              getCameraLensModelDimension(cameraOf(frame)));
  return isGFMoveClose(frame.detectionBoundary, boundary) ? HeadPosition::GROUP_MOVE_CLOSE
                                                          : HeadPosition::CENTER;
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
  const BaseTimerSetting& setting = *getTimerSetting();
  switch (position) {
    case HeadPosition::GROUP_MOVE_CLOSE:
      return setting.gfMoveCloseTimer;
    case HeadPosition::GROUP_HEAD_LEFT:
      return setting.gfHeadLeft;
    case HeadPosition::GROUP_HEAD_ON_EDGE:
      return setting.gfHeadOnEdge;
    case HeadPosition::GROUP_HEAD_OUTSIDE:
      return setting.gfHeadOutside;
    case HeadPosition::CENTER:
      return 0;
    default:
      return getWaitTimeForOtherCase(position);
  }
}

std::uint32_t BaseLayout::getWaitTimeForOtherCase(HeadPosition position) {
  PRB_LOGI(kTag, "%s() KORVALDEBUG head position %s WE SHUDNT COME HERE! ", "getWaitTimeForOtherCase",
           headPositionText(position));
  return 0;
}

bool BaseLayout::updateCurrentTimer() {
  if (mState.current == nullptr) {
    return false;
  }
  bool reframe = false;
  for (std::size_t index = 0; index < mState.current->frames.size(); ++index) {
    Frame& frame = mState.current->frames[index];
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
  setLayoutAnimation(mState.current, getReframeAnimation(position),
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
  mState.current->reframeFrameNumber = mLastFrameNumber;
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
  return isTimerRunning(mState.current.get(), mState.pending.get());
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
  return mState.current == nullptr ? 0 : getLayoutChangeTimer(candidate->layoutType, peopleCountChanged);
}

std::uint32_t BaseLayout::getLayoutChangeTimer(FramingType newType, bool peopleCountChanged) {
  if (mState.current == nullptr) {
    return 0;
  }
  if (mState.current->layoutType == FramingType::GROUP) {
    return getGroupLayoutChangeTimer(newType);
  }
  std::stringstream explanation;
  explanation << "getLayoutChangeTimer: ";
  return getOtherLayoutChangeTimer(newType, explanation, peopleCountChanged);
}

std::uint32_t BaseLayout::getGroupLayoutChangeTimer(FramingType newType) {
  return newType == FramingType::GROUP
             ? 0
             : noteTimer("gfToOtherLayoutChangeTimer", getTimerSetting()->gfToOtherLayoutChangeTimer);
}

std::uint32_t BaseLayout::getOtherLayoutChangeTimer(FramingType newType, std::stringstream& /*explanation*/,
                                                    bool /*peopleCountChanged*/) {
  return newType == mState.current->layoutType
             ? 0
             : noteTimer("roomToOtherLayoutChangeTimer", getTimerSetting()->roomToOtherLayoutChangeTimer);
}

std::string BaseLayout::getLayoutChangeAnimation() {
  return PrConfig::get().animationCutOnly ? "cut" : "dissolve";
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

std::uint32_t BaseLayout::getReframeAnimationDuration(HeadPosition /*position*/) {
  return static_cast<std::uint32_t>(PrConfig::get().cutAnimationDuration);
}

void BaseLayout::reportFrame(DecisionKind kind, std::size_t index, const Frame& frame,
                             std::uint32_t waitedMs) const {
  if (!hasDecisionListener()) {
    return;
  }
  LayoutDecision decision;
  decision.kind = kind;
  decision.streamId = mState.current->streamId;
  decision.from = frame.frameType;
  decision.to = frame.frameType;
  decision.timer = reframeTimerName(frame.headPosition);
  decision.waitMs = frame.headPositionTimer.duration;
  decision.waitedMs = waitedMs;
  decision.frameIndex = static_cast<std::int32_t>(index);
  decision.headPosition = frame.headPosition;
  mDecisionListener->onDecision(decision);
}

}  // namespace fyn::productionrules
