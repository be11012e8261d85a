#include "layouts/people/PrimaryPeopleLayout.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "config/PrConfig.h"
#include "layouts/people/PeopleFrameTimerSetting.h"
#include "layouts/people/PeopleWaits.h"
#include "layouts/people/SeatOrder.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// In milliseconds. People turn their heads to whoever speaks.
constexpr std::uint32_t kCamerasStayMs = 45000;

}  // namespace

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
  if (isSteady()) {
    choice.groupCamId = findFullestCamera(mState.people, choice.groupCamId);
    choice.seats = asSeatedFor(choice.roomCamId, *mlData, std::move(choice.seats), mState.mCurLayout.get(),
                               mState.mNextLayout.get());
  }
  return makeCandidate(*mlData, std::move(choice));
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
  const std::uint32_t age = std::min(tick() - mState.adoptedAt, tick() - mMovedAt.value_or(mState.adoptedAt));
  const bool rests = isSteady() && age < kCamerasStayMs;
  bool moved = false;
  for (std::size_t index = 0; index < mState.mCurLayout->frames.size(); ++index) {
    Frame& frame = mState.mCurLayout->frames[index];
    const bool isOfOne = frame.frameType == FramingType::HEAD && frame.fynHeads.size() == 1;
    if ((isOfOne && !rests) || (isSteady() && groupOnScreen() == &frame)) {
      moved |= updateFeedPriority(index, frame);
    }
  }
  if (moved) {
    mMovedAt = tick();
  }
  return moved;
}

bool PrimaryPeopleLayout::updateFeedPriority(std::size_t index, Frame& frame) {
  const std::optional<std::uint32_t> best = findBetterCamera(frame);
  const auto* const setting = timerSettingAs<PeopleFrameTimerSetting>();
  if (!best || *best == frame.fynCamId || setting == nullptr ||
      setting->feedPriorityChangedTimer == kInvalidTimer) {
    resetTimer(frame.feedPriorityTimer);
    return false;
  }
  if (!frame.feedPriorityTimer.isStarted()) {
    frame.feedPriorityTimer = getTimer(setting->feedPriorityChangedTimer, tick());
  }
  return isTimerExpire(frame.feedPriorityTimer, mTick) && moveToCamera(index, frame, *best);
}

std::optional<std::uint32_t> PrimaryPeopleLayout::findBetterCamera(const Frame& frame) const {
  if (frame.frameType == FramingType::GROUP) {
    return findFullestCamera(mState.people, frame.fynCamId);
  }
  const auto person = mState.people.find(*frame.fynHeads.begin());
  return person != mState.people.end() ? findBestCamera(*person->second) : std::nullopt;
}

// The frame as the camera would show it; nothing when it cannot fill the tile without cutting the person.
std::optional<Frame> PrimaryPeopleLayout::viewFrom(std::uint32_t camId, const Frame& frame) {
  Frame moved = frame;
  moved.fynCamId = camId;
  moved.srcRef = getImageSize(moved);
  moved.headPosition = HeadPosition::CENTER;
  resetTimer(moved.headPositionTimer);
  const bool isGroup = frame.frameType == FramingType::GROUP;
  moved.heads.clear();
  for (const auto& [id, person] : mState.people) {
    const Head* const head = person->findHead(camId);
    if (head != nullptr && (isGroup || frame.fynHeads.count(id) != 0)) {
      moved.heads.insert(head->id);
    }
  }
  if (isGroup) {
    calculateGroupFraming(moved);
    return moved;
  }
  const std::optional<RuleOfThirdsView> view = tryView(moved);
  if (!view) {
    return std::nullopt;
  }
  moved.source = view->source;
  moved.detectionBoundary = view->detectionBoundary;
  return moved;
}

bool PrimaryPeopleLayout::moveToCamera(std::size_t index, Frame& frame, std::uint32_t camId) {
  const Timer hold = std::exchange(frame.feedPriorityTimer, Timer{});
  std::optional<Frame> moved = viewFrom(camId, frame);
  if (!moved) {
    // Asked again after another hold.
    return false;
  }
  frame = std::move(*moved);
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
