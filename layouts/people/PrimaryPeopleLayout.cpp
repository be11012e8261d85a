#include "layouts/people/PrimaryPeopleLayout.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "config/PrConfig.h"
#include "layouts/people/PeopleFrameTimerSetting.h"
#include "layouts/people/PeopleWaits.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

const char* PrimaryPeopleLayout::getTag() const {
  return "PrimaryPeopleLayout";
}

// ---- Candidates ----

std::shared_ptr<Layout> PrimaryPeopleLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  const PrConfig& config = PrConfig::get();
  const std::int32_t ownCamId = FynCamerasConfig::get().fynCamId;
  PeopleChoice choice;
  choice.seats = chooseSeats(*mlData, mState.mCurLayout.get(), mState.mNextLayout.get(), ownCamId);
  choice.maxPeople = config.compositeModeMaxPeoplePrimary;
  choice.roomCamId = static_cast<std::uint32_t>(ownCamId);
  choice.groupCamId = findGroupCamera(*mlData, choice.seats, config.frontOfTheRoomCamId, ownCamId);
  return makeCandidate(*mlData, choice);
}

void PrimaryPeopleLayout::reportInput(const MLData& data) {
  mInputFaults.reportAllCameras(data, getTag());
}

bool PrimaryPeopleLayout::isLayoutValid() {
  return mState.mCurLayout != nullptr &&
         std::any_of(mState.mCurLayout->frames.begin(), mState.mCurLayout->frames.end(),
                     [](const Frame& frame) { return !isZeroRect(frame.source); });
}

// ---- The better camera ----

bool PrimaryPeopleLayout::updateFeedPriorityOfFrame() {
  if (mState.mCurLayout == nullptr) {
    return false;
  }
  bool moved = false;
  for (std::size_t index = 0; index < mState.mCurLayout->frames.size(); ++index) {
    Frame& frame = mState.mCurLayout->frames[index];
    if (frame.frameType == FramingType::HEAD && frame.fynHeads.size() == 1) {
      moved |= updateFeedPriority(index, frame);
    }
  }
  return moved;
}

bool PrimaryPeopleLayout::updateFeedPriority(std::size_t index, Frame& frame) {
  const auto person = mState.people.find(*frame.fynHeads.begin());
  const std::optional<std::uint32_t> best =
      person != mState.people.end() ? findBestCamera(*person->second) : std::nullopt;
  const auto* const setting = timerSettingAs<PeopleFrameTimerSetting>();
  if (!best || *best == frame.fynCamId || setting == nullptr ||
      setting->feedPriorityChangedTimer == kInvalidTimer) {
    resetTimer(frame.feedPriorityTimer);
    return false;
  }
  if (!frame.feedPriorityTimer.isStarted()) {
    frame.feedPriorityTimer = getTimer(setting->feedPriorityChangedTimer, tick());
  }
  return isTimerExpire(frame.feedPriorityTimer, mTick) && moveToCamera(index, frame, *person->second, *best);
}

bool PrimaryPeopleLayout::moveToCamera(std::size_t index, Frame& frame, const FynHead& person,
                                       std::uint32_t camId) {
  const Timer hold = std::exchange(frame.feedPriorityTimer, Timer{});
  Frame moved = frame;
  moved.fynCamId = camId;
  moved.heads = {person.findHead(camId)->id};
  moved.srcRef = getImageSize(moved);
  moved.headPosition = HeadPosition::CENTER;
  resetTimer(moved.headPositionTimer);
  const std::optional<RuleOfThirdsView> view = tryView(moved);
  if (!view) {
    // The better camera cannot fill this tile without cutting the person; asked again after another hold.
    return false;
  }
  moved.source = view->source;
  moved.detectionBoundary = view->detectionBoundary;
  frame = std::move(moved);
  const std::string animation = getLayoutChangeAnimation();
  setLayoutAnimation(mState.mCurLayout, animation, static_cast<int>(getLayoutChangeDuration(animation)));

  LayoutDecision decision;
  decision.kind = DecisionKind::FeedPriority;
  decision.streamId = mState.mCurLayout->streamId;
  decision.from = frame.frameType;
  decision.to = frame.frameType;
  decision.difference = LayoutDifference::Camera;
  nameWait(decision, mTimerSetting->findSource(waitOf(&PeopleFrameTimerSetting::feedPriorityChangedTimer)));
  decision.configuredMs = hold.duration;
  decision.waitMs = hold.duration;
  decision.waitedMs = tick() - hold.startTicks;
  decision.frameIndex = static_cast<std::int32_t>(index);
  decide(decision);
  return true;
}

// ---- Waits and transitions ----

std::string PrimaryPeopleLayout::getLayoutChangeAnimation() {
  return "cut";
}

std::uint32_t PrimaryPeopleLayout::getOtherLayoutChangeTimer(FramingType newType,
                                                             std::stringstream& explanation,
                                                             bool peopleCountChanged) {
  const std::uint32_t ms =
      BasePeopleLayout::getOtherLayoutChangeTimer(newType, explanation, peopleCountChanged);
  explanation << "PrimaryPeopleLayout, ";
  if (const WaitRule* const wait =
          findPeopleWait(mState.mCurLayout->layoutType, newType, peopleCountChanged)) {
    explanation << wait->explanation << ms;
  }
  return ms;
}

}  // namespace fyn::productionrules
