// The part of SpeakerFramingLayout that chooses the picture.
#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/RectMath.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/speaker/MemberFrame.h"
#include "layouts/speaker/SSBLayoutBuilder.h"
#include "layouts/speaker/SpeakerFramingLayout.h"
#include "layouts/speaker/TrialPicture.h"

namespace fyn::productionrules {

namespace {

// Who goes back to the picture before within this time is in an exchange, in milliseconds.
constexpr std::uint32_t kQuickReturnMs = 4000;

// Visible people from which on a picture is wide.
constexpr std::size_t kWide = 3;

// What is worth a cut: less than this share of the height.
constexpr double kCloser = 0.8;

// Where a share of the heads is missed, tags are, too: a picture closes in later by so many times the share.
constexpr double kLongerForMissed = 4;
constexpr double kLongestMs = std::numeric_limits<std::int32_t>::max();

const SpeakerFramingLayoutBuilder& builderInForce() {
  static const SpeakerFramingLayoutBuilder neighbours;
  static const SSBLayoutBuilder selectionBoxes;
  return PrConfig::get().sfUseSsb ? selectionBoxes : neighbours;
}

}  // namespace

bool SpeakerFramingLayout::verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData) {
  const bool isDue = BaseLayout::verifyIfLayoutChangeNeeded(mlData);
  if (isDue) {
    if (isAnySpeakerIn(mState.mNextLayout->frames.front())) {
      mMemory.speakersPicture = mState.mNextLayout;
    }
    if (frameOnScreen() != nullptr) {
      mMemory.shots.end(*mState.mCurLayout);
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
  mUrgency = {};
  std::shared_ptr<Layout> layout = choosePicture();
  if (layout != mState.mCurLayout && layout != mState.mNextLayout) {
    layout->frameNumber = mlData->frameNumber;
    layout->faceCount = static_cast<std::int32_t>(mlData->getHeads().size());
    fillPositionRect(layout);
  }
  return layout;
}

std::shared_ptr<Layout> SpeakerFramingLayout::choosePicture() {
  if (!mWalkers.empty()) {
    return makeLayout(FramingType::GROUP, mInView, "the speaker walks");
  }
  const FramingType withoutSpeaker = getLayoutTypeForGroupFrame(static_cast<int>(mInView.size()));
  if (mSpeech.isRecovering()) {
    return makeLayout(withoutSpeaker, mInView, mSpeech.recoveryReason());
  }
  if (isHeld()) {
    return keep(mState.mCurLayout, "held in silence");
  }
  return mSpeakers.empty() ? makeLayout(withoutSpeaker, mInView, "") : pictureOfSpeakers();
}

std::shared_ptr<Layout> SpeakerFramingLayout::pictureOfSpeakers() {
  if (showsSpeaker() && areWantedWellOnScreen() && !mMemory.exchange.isOfEverybody()) {
    std::shared_ptr<Layout> closer = closerPicture();
    return closer != nullptr ? closer : keep(mState.mCurLayout, "the speakers are in the picture");
  }
  if (mInView.size() == 1) {
    return makeLayout(FramingType::HEAD, mInView, "");
  }
  if (mMemory.exchange.isOfEverybody()) {
    return makeLayout(FramingType::GROUP, mInView, "everybody talks");
  }
  const std::set<std::int64_t> persons = wanted();
  const std::shared_ptr<Layout>& pending = mState.mNextLayout;
  if (pending != nullptr && isOfSpeaker(pending->layoutType)) {
    const std::set<std::int64_t>& coming = pending->frames.front().fynHeads;
    if (std::includes(coming.begin(), coming.end(), persons.begin(), persons.end())) {
      return keep(pending, pending->reason);
    }
  }
  if (mMemory.exchange.isOn()) {
    return makeLayout(FramingType::SUBSET_SPEAKER, inViewOf(persons), "they talk with one another");
  }
  return pictureOfTurn();
}

// Of those who speak: with who has had the word of late, as far as the picture is close, so that their talk
// needs no other one.
std::shared_ptr<Layout> SpeakerFramingLayout::pictureOfTurn() {
  std::shared_ptr<Layout> layout =
      builderInForce().build({mInView, mSpeakers, mHeads.camId(), getMaxScaleFactor()});
  const TrialPicture trial(mState.people, mHeads);
  const std::set<std::int64_t> both{mMemory.turns.holder(), mMemory.turns.holderBefore()};
  const bool isQuick = mState.mCurLayout != nullptr && tick() - mState.adoptedAt < kQuickReturnMs;
  if (isQuick && mMemory.shots.isReturn(*layout) && trial.isPartOfRoom(both)) {
    mMemory.exchange.begin(both);
    return makeLayout(FramingType::SUBSET_SPEAKER, inViewOf(both), "they talk with one another");
  }
  const auto ofLate = static_cast<std::uint32_t>(std::max(PrConfig::get().timersSfTighten, 0));
  const std::set<std::int64_t> company =
      trial.withOthers(wanted(), mMemory.turns.spokeWithin(ofLate, tick()));
  const std::set<std::int64_t>& shown = layout->frames.front().fynHeads;
  const bool isShown = std::includes(shown.begin(), shown.end(), company.begin(), company.end());
  if (company.size() == mSpeakers.size() || (isShown && isOfSpeaker(layout->layoutType))) {
    return layout;
  }
  return makeLayout(FramingType::SUBSET_SPEAKER, inViewOf(company), "with who has spoken of late");
}

std::shared_ptr<Layout> SpeakerFramingLayout::makeLayout(FramingType type, const Persons& persons,
                                                         const char* reason) const {
  return SpeakerFramingLayoutBuilder::makeLayout(type, persons, mHeads.camId(), reason);
}

std::shared_ptr<Layout> SpeakerFramingLayout::keep(const std::shared_ptr<Layout>& layout,
                                                   const char* reason) {
  dropAbsent(layout->frames.front());
  mState.reason = reason;
  return layout;
}

// Who has left without being missed by the picture leaves no number behind in it.
void SpeakerFramingLayout::dropAbsent(Frame& frame) const {
  const HeadsInView heads = headsOf(frame.fynCamId);
  if (heads.holdsAll(mState.people, frame.fynHeads)) {
    return;
  }
  std::set<std::int64_t> present;
  std::set<std::int64_t> theirHeads;
  for (const std::int64_t id : frame.fynHeads) {
    if (const Head* const head = heads.find(mState.people, id)) {
      present.insert(id);
      theirHeads.insert(head->id);
    }
  }
  if (!present.empty()) {
    frame.fynHeads = std::move(present);
    frame.heads = std::move(theirHeads);
  }
}

// Null while the picture is close enough, or somebody whom a closer one would leave out has spoken of late.
std::shared_ptr<Layout> SpeakerFramingLayout::closerPicture() {
  if (mInView.size() == 1) {
    return nullptr;
  }
  const std::uint32_t silentMs = tightenMs();
  if (tick() - mState.adoptedAt < silentMs) {
    return nullptr;
  }
  std::set<std::int64_t> persons = wanted();
  const std::vector<std::int64_t> latest = mMemory.turns.spokeWithin(silentMs, tick());
  persons.insert(latest.begin(), latest.end());
  const TrialPicture trial(mState.people, mHeads);
  const double lower = kCloser * heightOf(frameOnScreen()->source);
  // Mostly this is the end of it: a picture with more people is no lower.
  if (!trial.mayBeLowerThan(lower, persons) || (persons.size() > 1 && !trial.isClose(persons))) {
    return nullptr;
  }
  std::shared_ptr<Layout> layout =
      persons.size() == 1 ? builderInForce().build({mInView, mSpeakers, mHeads.camId(), getMaxScaleFactor()})
                          : makeLayout(FramingType::SUBSET_SPEAKER, inViewOf(persons), "");
  if (!isOfSpeaker(layout->layoutType) || !trial.isLowerThan(lower, layout->frames.front().fynHeads)) {
    return nullptr;
  }
  layout->reason = "the others have long been silent";
  mUrgency.isToCloseIn = true;
  return layout;
}

std::uint32_t SpeakerFramingLayout::tightenMs() const {
  const auto visible = static_cast<std::size_t>(std::count_if(
      mInView.begin(), mInView.end(), [this](const auto& person) { return isWholeOnScreen(*person); }));
  const PrConfig& config = PrConfig::get();
  const std::int32_t ms = std::max(visible >= kWide ? config.timersSfTightenWide : config.timersSfTighten, 0);
  const double longer = config.steadyFramingEnabled ? 1 + kLongerForMissed * mMemory.missed.value() : 1;
  return static_cast<std::uint32_t>(std::min(longer * ms, kLongestMs));
}

// ---- Exchanges ----

void SpeakerFramingLayout::updateExchange() {
  Exchange& exchange = mMemory.exchange;
  if (exchange.isOn() && inViewOf(exchange.persons()).size() != exchange.persons().size()) {
    exchange.end();
  }
  const auto fit = [this](const std::set<std::int64_t>& persons) {
    return TrialPicture(mState.people, mHeads).isPartOfRoom(persons);
  };
  exchange.update(mMemory.turns, fit, tick());
}

std::set<std::int64_t> SpeakerFramingLayout::wanted() const {
  std::set<std::int64_t> persons = mMemory.exchange.persons();
  for (const std::shared_ptr<FynHead>& speaker : mSpeakers) {
    persons.insert(speaker->id);
  }
  return persons;
}

// ---- What the change may wait for ----

// For how long those have spoken for whom the picture is made, the latest of them: who is not in it yet, and
// when all are, all.
void SpeakerFramingLayout::noteUrgency(const Layout& candidate) {
  mUrgency.isForWalker = !mWalkers.empty();
  mUrgency.leastShotMs = mMemory.shots.leastMs(candidate);
  if (mSpeech.isRecovering()) {
    // The picture is not for those who speak.
    return;
  }
  const std::set<std::int64_t>& speakers = mMemory.belief.speakers();
  const bool areAllShown =
      std::all_of(speakers.begin(), speakers.end(), [this](auto id) { return isWellOnScreen(id); });
  std::optional<std::uint32_t> least;
  for (const std::shared_ptr<FynHead>& speaker : mSpeakers) {
    if (areAllShown || !isWholeOnScreen(*speaker)) {
      const std::uint32_t ms = mMemory.belief.speechMs(speaker->id, tick());
      least = std::min(least.value_or(ms), ms);
    }
  }
  mUrgency.speechMs = least.value_or(0);
}

bool SpeakerFramingLayout::isHeld() const {
  // Holding anything else too would go on showing who came in first while the room fills.
  return PrConfig::get().sfLayoutHold && mMemory.belief.speakers().empty() && showsSpeaker() &&
         mMemory.speakersPicture == mState.mCurLayout && isEverybodyOnScreenPresent();
}

bool SpeakerFramingLayout::checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& candidate) {
  return !showsSpeaker() || !isOfSpeaker(candidate->layoutType) || mSpeakers.empty() ||
         mUrgency.isToCloseIn || !areWantedWellOnScreen();
}

}  // namespace fyn::productionrules
