#include "layouts/speaker/SpeakerFramingLayout.h"

#include <algorithm>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/PeopleInFrame.h"
#include "geometry/RectMath.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/speaker/SSBLayoutBuilder.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"
#include "layouts/speaker/SpeakerWaits.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

bool isByRuleOfThirds(const Frame& frame) {
  return frame.frameType == FramingType::HEAD || frame.frameType == FramingType::PROXIMITY;
}

const SpeakerFramingLayoutBuilder& builderInForce() {
  static const SpeakerFramingLayoutBuilder neighbours;
  static const SSBLayoutBuilder selectionBoxes;
  return PrConfig::get().sfUseSsb ? selectionBoxes : neighbours;
}

}  // namespace

SpeakerFramingLayout::SpeakerFramingLayout() : mCamId(FynHead::kNoCamera) {
  mTimerSetting = std::make_shared<SpeakerFramingTimerSetting>();
}

SpeakerFramingLayout::~SpeakerFramingLayout() = default;

std::string SpeakerFramingLayout::getDebugDataInJson() {
  std::string text = BaseLayout::getDebugDataInJson();
  if (mState.mCurLayout == nullptr) {
    return text;
  }
  text.insert(text.size() - 1, mSpeech.debugText(tick()));
  return text;
}

// ---- Waits ----

void SpeakerFramingLayout::setTimerSetting(std::shared_ptr<BaseTimerSetting> setting) {
  if (std::dynamic_pointer_cast<SpeakerFramingTimerSetting>(setting) != nullptr) {
    BaseLayout::setTimerSetting(std::move(setting));
  }
}

std::shared_ptr<BaseTimerSetting>& SpeakerFramingLayout::getTimerSetting() {
  static_cast<SpeakerFramingTimerSetting&>(*mTimerSetting) = SpeakerFramingTimerSetting(PrConfig::get());
  return mTimerSetting;
}

std::uint32_t SpeakerFramingLayout::getLayoutChangeTimer(FramingType newType, bool /*peopleCountChanged*/) {
  if (mState.mCurLayout == nullptr) {
    return 0;
  }
  const WaitRule* const wait = findSpeakerWait(mState.mCurLayout->layoutType, newType);
  return wait != nullptr ? chooseWait(wait->wait) : 0;
}

std::uint32_t SpeakerFramingLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
}

// ---- The decision ----

void SpeakerFramingLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  BaseLayout::updatePeopleMap(mlData);
  mCamId = static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
  const HeadsInView heads = headsToFollow(mCamId);
  mInputFaults.report(*mlData, heads, getTag());
  mInView = heads.sorted(mlData->getHeads());
  const std::vector<std::shared_ptr<FynHead>> tagged = getActiveSpeakers(mlData, mCamId);
  std::vector<std::shared_ptr<FynHead>> speakers;
  std::copy_if(mInView.begin(), mInView.end(), std::back_inserter(speakers), [&](const auto& person) {
    return std::find(tagged.begin(), tagged.end(), person) != tagged.end();
  });
  mSpeech.update(mInView, std::move(speakers), mCamId, showsSpeaker(), mTick);
  if (showsSpeaker() && isAnySpeakerIn(mState.mCurLayout->frames.front())) {
    mSpeakersPicture = mState.mCurLayout;
  }
}

bool SpeakerFramingLayout::isAnySpeakerIn(const Frame& frame) const {
  const std::vector<std::shared_ptr<FynHead>>& speakers = mSpeech.speakers();
  return std::any_of(speakers.begin(), speakers.end(),
                     [&](const auto& speaker) { return frame.fynHeads.count(speaker->id) != 0; });
}

bool SpeakerFramingLayout::verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData) {
  const bool isDue = BaseLayout::verifyIfLayoutChangeNeeded(mlData);
  if (isDue) {
    // Its people may have moved while it waited.
    Frame& frame = mState.mNextLayout->frames.front();
    frame.frameType = mState.mNextLayout->layoutType;
    keepMembersWhole(frame);
    if (isAnySpeakerIn(frame)) {
      mSpeakersPicture = mState.mNextLayout;
    }
  }
  noteSpeech(mState.mCurLayout,
             mState.mNextLayout != nullptr ? mState.mNextLayout->layoutType : FramingType::NONE);
  noteSpeech(mState.mNextLayout, FramingType::NONE);
  return isDue;
}

void SpeakerFramingLayout::noteSpeech(const std::shared_ptr<Layout>& layout, FramingType pendingType) const {
  if (layout != nullptr) {
    layout->activeSpeaker = mSpeech.activeSpeaker();
    layout->nextLayoutType = pendingType;
  }
}

std::shared_ptr<Layout> SpeakerFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  if (isHeld()) {
    auto held = std::make_shared<Layout>(*mState.mCurLayout);
    held->reason = "held in silence";
    return held;
  }
  std::shared_ptr<Layout> layout = createCandidate();
  layout->frameNumber = mlData->frameNumber;
  layout->faceCount = static_cast<std::int32_t>(mlData->getHeads().size());
  fillPositionRect(layout);
  keepMembersWhole(layout->frames.front());
  return layout;
}

std::shared_ptr<Layout> SpeakerFramingLayout::createCandidate() {
  if (mInView.size() < 2 || mSpeech.isRecovering() || mSpeech.speakers().empty()) {
    const FramingType type = getLayoutTypeForGroupFrame(static_cast<int>(mInView.size()));
    return SpeakerFramingLayoutBuilder::makeLayout(type, mInView, mCamId, mSpeech.recoveryReason());
  }
  return builderInForce().build({mInView, mSpeech.speakers(), mCamId, getMaxScaleFactor()});
}

bool SpeakerFramingLayout::showsSpeaker() const {
  return mState.mCurLayout != nullptr && (mState.mCurLayout->layoutType == FramingType::HEAD ||
                                          mState.mCurLayout->layoutType == FramingType::PROXIMITY ||
                                          mState.mCurLayout->layoutType == FramingType::SUBSET_SPEAKER);
}

// Holding anything else too would go on showing who came in first while the room fills.
bool SpeakerFramingLayout::isHeld() const {
  return PrConfig::get().sfLayoutHold && !mSpeech.isRecovering() && mSpeech.speakers().empty() &&
         showsSpeaker() && mSpeakersPicture == mState.mCurLayout && isEverybodyOnScreenPresent();
}

bool SpeakerFramingLayout::isEverybodyOnScreenPresent() const {
  const std::vector<Frame>& frames = mState.mCurLayout->frames;
  return std::all_of(frames.begin(), frames.end(), [this](const Frame& frame) {
    return headsToFollow(frame.fynCamId).holdsAll(mState.people, frame.fynHeads);
  });
}

bool SpeakerFramingLayout::checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& /*candidate*/) {
  const std::vector<std::shared_ptr<FynHead>>& speakers = mSpeech.speakers();
  if (!showsSpeaker() || mSpeech.isRecovering() || speakers.empty() || !isEverybodyOnScreenPresent()) {
    return true;
  }
  return !std::all_of(speakers.begin(), speakers.end(), [this](const auto& speaker) {
    return isSpeakerFramedAlready(speaker, mState.mCurLayout, mCamId);
  });
}

std::string SpeakerFramingLayout::getLayoutChangeAnimation() {
  const PrConfig& config = PrConfig::get();
  if (config.animationCutOnly) {
    return "cut";
  }
  const auto showsOneFrame = [](const std::shared_ptr<Layout>& layout) {
    return layout != nullptr && layout->frames.size() == 1;
  };
  const bool canMove =
      showsOneFrame(mState.mCurLayout) && showsOneFrame(mState.mNextLayout) &&
      mState.mCurLayout->frames.front().fynCamId == mState.mNextLayout->frames.front().fynCamId;
  return config.animationEnableEase && canMove ? "ease" : "dissolve";
}

// ---- Views ----

unsigned SpeakerFramingLayout::getMaxScaleFactor() {
  return speakerZoomLimit();
}

bool SpeakerFramingLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return mHeadFaults.allowFraming(frame, mState.people, getImageSize(frame)) &&
         BaseLayout::constructBoundingBox(frame, box, withHeadBuffer);
}

bool SpeakerFramingLayout::updateCurrentTimer() {
  if (mState.mCurLayout == nullptr) {
    return false;
  }
  for (Frame& frame : mState.mCurLayout->frames) {
    if (hasUnusableMember(frame)) {
      // No view can be made of such a box; the layout change follows.
      frame.headPosition = HeadPosition::CENTER;
      resetTimer(frame.headPositionTimer);
      return false;
    }
    keepMembersWhole(frame);
    if (frame.frameType == FramingType::SUBSET_SPEAKER) {
      // Such a frame is placed around whoever is in view: no box of it would ever tell who is missing.
      mHeadFaults.report(frame, mState.people);
    }
  }
  return BaseLayout::updateCurrentTimer();
}

bool SpeakerFramingLayout::hasUnusableMember(const Frame& frame) const {
  if (!isByRuleOfThirds(frame)) {
    return false;
  }
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  return std::any_of(frame.fynHeads.begin(), frame.fynHeads.end(), [&](std::int64_t id) {
    const auto person = mState.people.find(id);
    const Head* const head =
        person == mState.people.end() ? nullptr : person->second->findHead(frame.fynCamId);
    return head != nullptr && !isZeroRect(head->bbox) && !heads.isUsable(head->bbox);
  });
}

// The rule of thirds takes the width of a view from its height, so a row of people, or an odd box, would be
// cut at the sides. Such a frame is placed as a selection of speakers is; it stays one until the layout
// changes.
void SpeakerFramingLayout::keepMembersWhole(Frame& frame) {
  if (isByRuleOfThirds(frame) && wouldCutMembers(frame)) {
    frame.frameType = FramingType::SUBSET_SPEAKER;
  }
}

bool SpeakerFramingLayout::wouldCutMembers(const Frame& frame) {
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  if (!heads.holdsAll(mState.people, frame.fynHeads)) {
    return false;
  }
  Rect box;
  for (const Rect& head : heads.bounds(mState.people, frame.fynHeads)) {
    box = isZeroRect(box) ? head : enclosing(box, head);
  }
  return !heads.areWhole(mState.people, frame.fynHeads, ruleOfThirdsView(frame, box).source);
}

// ---- Group framing of a selection ----

PeopleMap& SpeakerFramingLayout::getHeadMapForGroup(const Frame& frame) {
  if (frame.frameType != FramingType::SUBSET_SPEAKER) {
    return BaseLayout::getHeadMapForGroup(frame);
  }
  mMembers.clear();
  for (const std::int64_t id : frame.fynHeads) {
    const auto person = mState.people.find(id);
    if (person != mState.people.end()) {
      mMembers.insert(*person);
    }
  }
  return mMembers;
}

std::vector<Rect> SpeakerFramingLayout::getGroupHeadBounds(const Frame& frame) {
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  std::vector<Rect> bounds;
  for (const auto& [id, person] : getHeadMapForGroup(frame)) {
    if (const Head* const head = heads.find(*person)) {
      bounds.push_back(head->bbox);
    }
  }
  return bounds;
}

HeadPosition SpeakerFramingLayout::getGroupHeadPosition(const Frame& frame) {
  // Without a member in view there is nothing to frame anew; the layout change follows.
  if (frame.frameType == FramingType::SUBSET_SPEAKER && getGroupHeadBounds(frame).empty()) {
    return HeadPosition::CENTER;
  }
  return BaseLayout::getGroupHeadPosition(frame);
}

void SpeakerFramingLayout::calculateGroupFraming(Frame& frame) {
  if (frame.frameType != FramingType::SUBSET_SPEAKER) {
    BaseLayout::calculateGroupFraming(frame);
    return;
  }
  // The members stay those of the frame; only the group of everybody takes in who has come.
  SpeakerFramingLayoutBuilder::calculateGroupFraming(frame, getGroupHeadBounds(frame), getMaxScaleFactor());
}

}  // namespace fyn::productionrules
