#include "layouts/speaker/SpeakerFramingLayout.h"

#include <algorithm>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/Overlap.h"
#include "geometry/RectMath.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/people/PersonRenaming.h"
#include "layouts/people/ShotChange.h"
#include "layouts/speaker/MemberFrame.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"
#include "layouts/speaker/SpeakerWaits.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Milliseconds. With the time that a path takes to forget the walk, a second and a half.
constexpr std::uint32_t kStandingMs = 500;
// For a picture that follows a walker, and for one in place of a picture that shows nobody.
constexpr std::uint32_t kUrgentWaitMs = 600;
constexpr std::uint32_t kLeastWaitMs = 100;
// Until then nobody knows whether whoever comes into the empty room walks on.
constexpr std::uint32_t kEntryMs = 1000;

// Of a head's width and height: whoever has the word closer to a side of the picture looks lost there.
constexpr double kRoom = 0.3;

std::uint32_t ownCamera() {
  return static_cast<std::uint32_t>(FynCamerasConfig::get().fynCamId);
}

Rect withRoom(const Rect& head) {
  return grownBy(head, truncate(kRoom * widthOf(head)), truncate(kRoom * heightOf(head)));
}

// A cut to the same people from another side must be worth it.
constexpr std::uint32_t kCameraStaysMs = 20000;

}  // namespace

SpeakerFramingLayout::SpeakerFramingLayout() : mHeads(FynHead::kNoCamera, {}, HeadRule::NearImage) {
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

std::uint32_t SpeakerFramingLayout::getWaitTime(const std::shared_ptr<Layout>& candidate,
                                                bool peopleCountChanged) {
  noteUrgency(*candidate);
  return BaseLayout::getWaitTime(candidate, peopleCountChanged);
}

std::uint32_t SpeakerFramingLayout::getLayoutChangeTimer(FramingType newType, bool /*peopleCountChanged*/) {
  if (mState.mCurLayout == nullptr) {
    return 0;
  }
  const WaitRule* const rule = findSpeakerWait(mState.mCurLayout->layoutType, newType);
  const std::uint32_t configured = rule != nullptr ? chooseWait(rule->wait) : 0;
  const bool isAbandoned = PrConfig::get().steadyFramingEnabled && showsSpeaker() && !isAnybodyOnScreen();
  if (mUrgency.isForWalker || isAbandoned) {
    return std::min(configured, kUrgentWaitMs);
  }
  const std::uint32_t left = configured - std::min(configured, mUrgency.speechMs);
  const std::uint32_t wait = std::min(configured, std::max(left, kLeastWaitMs));
  if (mState.mCurLayout->layoutType == FramingType::ROOM) {
    return newType == FramingType::HEAD ? std::max(wait, kEntryMs) : wait;
  }
  const bool hasLost = showsSpeaker() && !isEverybodyOnScreenPresent();
  if (mState.adoptedBefore == 0 || hasLost) {
    return wait;
  }
  const std::uint32_t age = tick() - mState.adoptedAt;
  return std::max(wait, mUrgency.leastShotMs - std::min(mUrgency.leastShotMs, age));
}

std::uint32_t SpeakerFramingLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return waitForSingleHead(position);
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

std::optional<std::string> SpeakerFramingLayout::transitionFrom(const Layout& before) const {
  return PrConfig::get().animationCutOnly ? std::nullopt : steadyTransition(before, *mState.mCurLayout);
}

std::string SpeakerFramingLayout::getReframeAnimation(HeadPosition position) {
  return PrConfig::get().animationCutOnly ? BaseLayout::getReframeAnimation(position) : steadyMove();
}

// ---- Who is there, and who speaks ----

std::shared_ptr<MLData> SpeakerFramingLayout::findPresent(const std::shared_ptr<MLData>& mlData) {
  mInputFaults.report(*mlData, headsToFollow(ownCamera()), getTag());
  std::shared_ptr<MLData> present = mMemory.presence.update(mlData, tick());
  if (!PrConfig::get().presenceEnabled) {
    return mlData;
  }
  for (const PersonRenamed& renamed : mMemory.presence.renamed()) {
    takeNewNumber(mState.mCurLayout.get(), renamed);
    takeNewNumber(mState.mNextLayout.get(), renamed);
    mMemory.belief.rename(renamed.before->id, renamed.now->id);
    mMemory.turns.rename(renamed.before->id, renamed.now->id);
    mMemory.exchange.rename(renamed.before->id, renamed.now->id);
  }
  return present;
}

void SpeakerFramingLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  mCameras.clear();
  addCamerasInUse(mCameras);
  *mSmooth = *mlData;
  for (const HeadsInView& heads : mCameras) {
    mMemory.smoothers[heads.camId()].smooth(*mSmooth, heads, tick());
  }
  BaseLayout::updatePeopleMap(mSmooth);
  mHeads = mCameras.front();
  listen();
  mHeads = headsOf(chooseCamera(*mSmooth));
  findInView();
  if (showsSpeaker() && (isAnySpeakerIn(*frameOnScreen()) ||
                         std::any_of(mSpeakers.begin(), mSpeakers.end(),
                                     [this](const auto& speaker) { return isWholeOnScreen(*speaker); }))) {
    mMemory.speakersPicture = mState.mCurLayout;
  }
  watchSpeakers(*mlData);
  mWalkers = findWalkers();
  updateExchange();
}

void SpeakerFramingLayout::listen() {
  mHints.clear();
  for (const auto& [id, person] : mState.people) {
    SpeechHint hint{id, false, mMemory.presence.isMissed(person->id), isWholeOnScreen(*person)};
    bool isInView = false;
    for (const HeadsInView& heads : mCameras) {
      const Head* const head = heads.find(*person);
      isInView = isInView || head != nullptr;
      hint.isTagged = hint.isTagged || (head != nullptr && head->isSpeaker && !hint.isMissed);
    }
    if (isInView) {
      mHints.push_back(hint);
    }
  }
  const auto missed =
      std::count_if(mHints.begin(), mHints.end(), [](const SpeechHint& hint) { return hint.isMissed; });
  const std::uint32_t now = tick();
  mMemory.missed.add(mHints.size(), static_cast<std::size_t>(missed), now);
  mMemory.belief.update(mHints, now);
  mMemory.turns.update(mMemory.belief.speakers(), now);
}

void SpeakerFramingLayout::findInView() {
  mInView.clear();
  mHeads.visit(mSmooth->getHeads(), [this](const auto& person) { mInView.push_back(person); });
  mHeads.sort(mInView);
  mSpeakers.clear();
  for (const std::shared_ptr<FynHead>& person : mInView) {
    if (mMemory.belief.speakers().count(person->id) != 0) {
      mSpeakers.push_back(person);
    }
  }
}

// What the result says itself, by the boxes as they came: whether these can be trusted is the question.
void SpeakerFramingLayout::watchSpeakers(const MLData& data) {
  bool isAnybodySeen = false;
  mTagged.clear();
  mHeads.visit(data.getHeads(), [&](const auto& person) {
    if (mMemory.presence.isMissed(person->id)) {
      return;
    }
    isAnybodySeen = true;
    if (person->findHead(mHeads.camId())->isSpeaker) {
      mTagged.push_back(person);
    }
  });
  mHeads.sort(mTagged);
  mSpeech.update(isAnybodySeen, mTagged, mHeads.camId(), showsSpeaker(), mTick);
}

void SpeakerFramingLayout::addCamerasInUse(std::vector<HeadsInView>& cameras) const {
  cameras.push_back(headsToFollow(ownCamera()));
}

std::uint32_t SpeakerFramingLayout::chooseCamera(const MLData& /*data*/) {
  return ownCamera();
}

std::optional<std::uint32_t> SpeakerFramingLayout::cameraOfSpeaker() {
  const auto speaker = mState.people.find(mMemory.turns.holder());
  if (speaker == mState.people.end() || (mMemory.belief.speakers().empty() && !isHeld())) {
    return std::nullopt;
  }
  // A picture of everybody ends anyway when somebody speaks.
  const std::optional<std::uint32_t> onScreen = showsSpeaker() && isWholeOnScreen(*speaker->second)
                                                    ? std::optional(frameOnScreen()->fynCamId)
                                                    : std::nullopt;
  const PrConfig& config = PrConfig::get();
  const auto holdMs = static_cast<std::uint32_t>(config.timersPFFeedPriorityChange);
  const bool rests =
      config.steadyFramingEnabled && showsSpeaker() && frameOnScreen()->fynHeads.count(speaker->first) != 0;
  return mMemory.camera.choose(*speaker->second, onScreen, rests ? std::max(holdMs, kCameraStaysMs) : holdMs,
                               tick());
}

void SpeakerFramingLayout::resetLayouts() {
  BaseLayout::resetLayouts();
  mMemory = {};
}

// Of the speakers, and of somebody who is alone.
SpeakerFramingLayout::Persons SpeakerFramingLayout::findWalkers() const {
  const Persons& subjects = mInView.size() == 1 ? mInView : mSpeakers;
  Persons walkers;
  std::copy_if(subjects.begin(), subjects.end(), std::back_inserter(walkers), [this](const auto& person) {
    return mMemory.presence.hasWalked(person->id, kStandingMs, tick());
  });
  return walkers;
}

SpeakerFramingLayout::Persons SpeakerFramingLayout::inViewOf(const std::set<std::int64_t>& persons) const {
  Persons found;
  std::copy_if(mInView.begin(), mInView.end(), std::back_inserter(found),
               [&](const auto& person) { return persons.count(person->id) != 0; });
  return found;
}

bool SpeakerFramingLayout::isAnySpeakerIn(const Frame& frame) const {
  return std::any_of(mSpeakers.begin(), mSpeakers.end(),
                     [&](const auto& speaker) { return frame.fynHeads.count(speaker->id) != 0; });
}

HeadsInView SpeakerFramingLayout::headsOf(std::uint32_t camId) const {
  return camId == mHeads.camId() ? mHeads : headsToFollow(camId);
}

// Null without a picture; a layout that was sent may be empty as well.
const Frame* SpeakerFramingLayout::frameOnScreen() const {
  const Layout* const layout = mState.mCurLayout.get();
  return layout != nullptr && !layout->frames.empty() ? &layout->frames.front() : nullptr;
}

bool SpeakerFramingLayout::showsSpeaker() const {
  return frameOnScreen() != nullptr && isOfSpeaker(mState.mCurLayout->layoutType);
}

bool SpeakerFramingLayout::isWholeOnScreen(const FynHead& person) const {
  const Frame* const frame = frameOnScreen();
  if (frame == nullptr) {
    return false;
  }
  const HeadsInView heads = headsOf(frame->fynCamId);
  const Head* const head = heads.find(person);
  return head != nullptr && heads.isWhole(head->bbox, frame->source);
}

bool SpeakerFramingLayout::isWellOnScreen(std::int64_t person) const {
  const Frame* const frame = frameOnScreen();
  if (frame == nullptr || frame->fynCamId != mHeads.camId()) {
    return false;
  }
  const Head* const head = mHeads.find(mState.people, person);
  const bool isMeant = frame->fynHeads.count(person) != 0;
  return head != nullptr && mHeads.isWhole(isMeant ? head->bbox : withRoom(head->bbox), frame->source);
}

bool SpeakerFramingLayout::areWantedWellOnScreen() const {
  const std::set<std::int64_t>& exchange = mMemory.exchange.persons();
  return std::all_of(mSpeakers.begin(), mSpeakers.end(),
                     [this](const auto& speaker) { return isWellOnScreen(speaker->id); }) &&
         std::all_of(exchange.begin(), exchange.end(), [this](auto id) { return isWellOnScreen(id); });
}

bool SpeakerFramingLayout::isEverybodyOnScreenPresent() const {
  const std::vector<Frame>& frames = mState.mCurLayout->frames;
  return std::all_of(frames.begin(), frames.end(), [this](const Frame& frame) {
    return headsOf(frame.fynCamId).holdsAll(mState.people, frame.fynHeads);
  });
}

bool SpeakerFramingLayout::isAnybodyOnScreen() const {
  const Frame& frame = *frameOnScreen();
  const HeadsInView heads = headsOf(frame.fynCamId);
  return std::any_of(mState.people.begin(), mState.people.end(), [&](const auto& person) {
    const Head* const head = heads.find(*person.second);
    return head != nullptr && getIntersectionOverUnion(head->bbox, frame.source) > 0;
  });
}

}  // namespace fyn::productionrules
