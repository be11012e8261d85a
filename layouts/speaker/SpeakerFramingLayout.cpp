#include "layouts/speaker/SpeakerFramingLayout.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/HeadBuffer.h"
#include "geometry/PeopleInFrame.h"
#include "geometry/RectMath.h"
#include "geometry/RuleOfThirds.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/PersonsInView.h"
#include "layouts/speaker/SSBLayoutBuilder.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

Rect insideImage(const Rect& box, const Dimension& image) {
  return Rect{std::max(box.left, 0), std::max(box.top, 0), std::min(box.right, image.width),
              std::min(box.bottom, image.height)};
}

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
  if (mState.current == nullptr) {
    return text;
  }
  std::ostringstream speech;
  speech << R"(, "activeSpeaker":)" << mSpeech.activeSpeaker() << R"(, "recovery":")"
         << mSpeech.recoveryReason() << R"(", "recoveryRemainingMs":)" << mSpeech.recoveryRemainingMs(tick());
  text.insert(text.size() - 1, speech.str());
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
  const auto* const setting = timerSettingAs<SpeakerFramingTimerSetting>();
  if (mState.current == nullptr || setting == nullptr) {
    return 0;
  }
  const SpeakerFramingTimerSetting::Wait wait =
      setting->layoutChangeWait(mState.current->layoutType, newType);
  return noteTimer(wait.name, wait.ms);
}

std::uint32_t SpeakerFramingLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead<SpeakerFramingTimerSetting>(position);
}

// ---- The decision ----

void SpeakerFramingLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  BaseLayout::updatePeopleMap(mlData);
  mCamId = static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
  mInputFaults.report(*mlData, mCamId, getTag(), [](const Head* head, const Dimension& image) {
    return isUsableBox(head->bbox, image);
  });
  mInView = personsInView(mlData->getHeads(), mCamId);
  const std::vector<std::shared_ptr<FynHead>> tagged = getActiveSpeakers(mlData, mCamId);
  std::vector<std::shared_ptr<FynHead>> speakers;
  std::copy_if(mInView.begin(), mInView.end(), std::back_inserter(speakers), [&](const auto& person) {
    return std::find(tagged.begin(), tagged.end(), person) != tagged.end();
  });
  mSpeech.update(mInView, std::move(speakers), mCamId, showsSpeaker(), mTick);
  if (showsSpeaker() && isAnySpeakerIn(mState.current->frames.front())) {
    mSpeakersPicture = mState.current;
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
    Frame& frame = mState.pending->frames.front();
    frame.frameType = mState.pending->layoutType;
    keepMembersWhole(frame);
    if (isAnySpeakerIn(frame)) {
      mSpeakersPicture = mState.pending;
    }
  }
  noteSpeech(mState.current, mState.pending != nullptr ? mState.pending->layoutType : FramingType::NONE);
  noteSpeech(mState.pending, FramingType::NONE);
  return isDue;
}

void SpeakerFramingLayout::noteSpeech(const std::shared_ptr<Layout>& layout, FramingType pendingType) const {
  if (layout != nullptr) {
    layout->activeSpeaker = mSpeech.activeSpeaker();
    layout->nextLayoutType = pendingType;
  }
}

std::shared_ptr<Layout> SpeakerFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  noteReason(mSpeech.recoveryReason());
  if (isHeld()) {
    noteReason("held in silence");
    return mState.current;
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
    return SpeakerFramingLayoutBuilder::makeLayout(type, mInView, mCamId);
  }
  const SpeakerPicture picture =
      builderInForce().build({mInView, mSpeech.speakers(), mCamId, getMaxScaleFactor()});
  noteReason(picture.reason);
  return picture.layout;
}

bool SpeakerFramingLayout::showsSpeaker() const {
  return mState.current != nullptr && (mState.current->layoutType == FramingType::HEAD ||
                                       mState.current->layoutType == FramingType::PROXIMITY ||
                                       mState.current->layoutType == FramingType::SUBSET_SPEAKER);
}

// Holding anything else too would go on showing who came in first while the room fills.
bool SpeakerFramingLayout::isHeld() const {
  return PrConfig::get().sfLayoutHold && !mSpeech.isRecovering() && mSpeech.speakers().empty() &&
         showsSpeaker() && mSpeakersPicture == mState.current && isEverybodyOnScreenPresent();
}

bool SpeakerFramingLayout::isEverybodyOnScreenPresent() const {
  const std::vector<Frame>& frames = mState.current->frames;
  return std::all_of(frames.begin(), frames.end(), [this](const Frame& frame) {
    return std::all_of(frame.fynHeads.begin(), frame.fynHeads.end(),
                       [&](std::int64_t id) { return findHeadInView(mState.people, id, frame) != nullptr; });
  });
}

bool SpeakerFramingLayout::checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& /*candidate*/) {
  const std::vector<std::shared_ptr<FynHead>>& speakers = mSpeech.speakers();
  if (!showsSpeaker() || mSpeech.isRecovering() || speakers.empty() || !isEverybodyOnScreenPresent()) {
    return true;
  }
  return !std::all_of(speakers.begin(), speakers.end(), [this](const auto& speaker) {
    return isSpeakerFramedAlready(speaker, mState.current, mCamId);
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
  const bool canMove = showsOneFrame(mState.current) && showsOneFrame(mState.pending) &&
                       mState.current->frames.front().fynCamId == mState.pending->frames.front().fynCamId;
  return config.animationEnableEase && canMove ? "ease" : "dissolve";
}

// ---- Views ----

unsigned SpeakerFramingLayout::getMaxScaleFactor() {
  return speakerZoomLimit();
}

bool SpeakerFramingLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return mHeadFaults.isBoxWorthAsking(frame, mState.people, getImageSize(frame)) &&
         BaseLayout::constructBoundingBox(frame, box, withHeadBuffer);
}

bool SpeakerFramingLayout::updateCurrentTimer() {
  if (mState.current == nullptr) {
    return false;
  }
  for (Frame& frame : mState.current->frames) {
    if (hasUnusableMember(frame)) {
      // No view can be made of such a box; the layout change follows.
      frame.headPosition = HeadPosition::CENTER;
      resetTimer(frame.headPositionTimer);
      return false;
    }
    keepMembersWhole(frame);
    if (frame.frameType == FramingType::SUBSET_SPEAKER) {
      // For its report alone: such a frame is placed around whoever is in view.
      Rect box;
      constructBoundingBox(frame, box, false);
    }
  }
  return BaseLayout::updateCurrentTimer();
}

bool SpeakerFramingLayout::hasUnusableMember(const Frame& frame) const {
  if (!isByRuleOfThirds(frame)) {
    return false;
  }
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  return std::any_of(frame.fynHeads.begin(), frame.fynHeads.end(), [&](std::int64_t id) {
    const auto person = mState.people.find(id);
    const Head* const head =
        person == mState.people.end() ? nullptr : person->second->findHead(frame.fynCamId);
    return head != nullptr && !isZeroRect(head->bbox) && !isUsableBox(head->bbox, image);
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
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  Rect box;
  for (const std::int64_t id : frame.fynHeads) {
    const Head* const head = findHeadInView(mState.people, id, frame);
    if (head == nullptr) {
      return false;
    }
    box = isZeroRect(box) ? head->bbox : enclosing(box, head->bbox);
  }
  const Rect view = getRuleOfThirdFrame(getBaseRectForRuleofThirdsFrame(frame, box), widthOf(frame.dest),
                                        heightOf(frame.dest), frame.frameLayout, getImageSize(frame),
                                        static_cast<int>(getMaxScaleFactor()));
  return enclosing(view, insideImage(box, image)) != view;
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
  std::vector<Rect> bounds;
  for (const auto& [id, person] : getHeadMapForGroup(frame)) {
    if (const Head* const head = findHeadInView(mState.people, id, frame)) {
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
