// The part of BaseLayout that computes what a frame shows.
#include <optional>

#include "geometry/GroupFrame.h"
#include "geometry/HeadBuffer.h"
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

void logDue(const Frame& frame, std::size_t index, bool fromFrameTimer) {
  PRB_LOGI(
      kTag,
      "%s() frametype: %s  Need to update the view of frame[%d], are we creating new layout --> %s, else "
      "frame timer has expired for head position %s",
      "updateLayoutViews", layoutToText(frame.frameType), static_cast<int>(index),
      fromFrameTimer ? "no" : "yes", headPositionText(frame.headPosition));
}

}  // namespace

void BaseLayout::updateLayoutViews(bool fromFrameTimer) {
  if (mState.mCurLayout == nullptr) {
    return;
  }
  std::vector<Frame>& frames = mState.mCurLayout->frames;
  PRB_LOGD(kTag, "%s() layoutType: %s frame size: %d heads: %d mlSize: %d", "updateLayoutViews",
           layoutToText(mState.mCurLayout->layoutType), static_cast<int>(frames.size()),
           frames.empty() ? -1 : static_cast<int>(frames.front().heads.size()),
           static_cast<int>(getPeopleCount()));
  for (std::size_t index = 0; index < frames.size(); ++index) {
    Frame& frame = frames[index];
    if (!isReframeDue(frame) && fromFrameTimer) {
      PRB_LOGD(kTag, "%s() timer didn't expire for frameType: %s , skipping the frame", "updateLayoutViews",
               layoutToText(frame.frameType));
      continue;
    }
    logDue(frame, index, fromFrameTimer);
    if (fromFrameTimer) {
      reframe(index, frame);
    } else {
      updateFrameView(frame);
    }
    resetTimer(frame.headPositionTimer);
    frame.headPosition = HeadPosition::CENTER;
  }
}

bool BaseLayout::isReframeDue(Frame& frame) {
  return isTimerExpire(frame.feedPriorityTimer, mTick) || isTimerExpire(frame.headPositionTimer, mTick);
}

void BaseLayout::reframe(std::size_t index, Frame& frame) {
  const Timer& wait = frame.headPositionTimer;
  const std::uint32_t waitedMs = wait.isStarted() ? tick() - wait.startTicks : 0;
  updateFrameView(frame);
  reportFrame(DecisionKind::Reframed, index, frame, waitedMs);
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
      frame.source = getRoomView(frame);
      break;
    default:
      handleInvalidFrame(frame);
      break;
  }
}

Rect BaseLayout::getRoomView(const Frame& /*frame*/) {
  return kRoomView;
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
  const bool isBuffered = withHeadBuffer && frame.frameType == FramingType::PROXIMITY;
  const Dimension image = isBuffered ? getCameraLensModelDimension(cameraOf(frame)) : Dimension();
  std::optional<Rect> around;
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
    const Rect bound = isBuffered ? getHeadBufferRect(head->bbox, image) : head->bbox;
    around = around ? enclosing(*around, bound) : bound;
  }
  if (around) {
    box = *around;
  } else {
    getBoundaries({}, box.left, box.right, box.top, box.bottom);  // says that there is nobody
  }
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

}  // namespace fyn::productionrules
