#include "tools/report/FramingMeter.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"
#include "tools/report/RoomPeople.h"

namespace fyn::productionrules {

namespace {

constexpr int kTenthsPerMicrosecond = 10;

bool isVisionResult(const RecordingEvent& event) {
  const auto* const message = std::get_if<BusMessage>(&event.what);
  return message != nullptr && message->topic == topics::kVisionResult;
}

bool bringsLayout(DecisionKind kind) {
  return kind == DecisionKind::Adopted || kind == DecisionKind::FeedPriority ||
         kind == DecisionKind::Secondary;
}

/** A frame that shows everybody does not single out a speaker. */
bool showsEverybody(FramingType type) {
  return type == FramingType::GROUP || type == FramingType::PARTIAL_GROUP || type == FramingType::ROOM ||
         type == FramingType::NONE;
}

}  // namespace

FramingMeter::FramingMeter(std::optional<int> stream)
    : mStream(stream),
      mChanges(mMeasurement),
      mShots(mMeasurement),
      mComposition(mMeasurement),
      mFaults(mMeasurement),
      mStays(mMeasurement),
      mSpeech(mMeasurement),
      mEvents(mMeasurement),
      mWaits(mMeasurement) {}

void FramingMeter::onDecision(const LayoutDecision& decision) {
  if (bringsLayout(decision.kind)) {
    mDecided.insert(decision.streamId);
  }
  if (!mStream || decision.streamId == *mStream) {
    // The event that is handled is already the end of what was measured.
    mWaits.take(mMeasuredUntil, decision);
  }
}

void FramingMeter::handle(Replay& replay, const RecordingEvent& event) {
  passTime(event.t);
  mDecided.clear();
  const auto start = std::chrono::steady_clock::now();
  replay.handle(event);
  const auto took = std::chrono::steady_clock::now() - start;
  const auto* const truth = std::get_if<Truth>(&event.what);
  if (truth != nullptr) {
    takeTruth(event.t, *truth);
  }
  if (replay.service() == nullptr) {
    return;
  }
  const ServiceStateScope scope(replay.state());
  ProductionRuleIPCService& service = *replay.service();
  const bool isVision = isVisionResult(event);
  if (isVision) {
    takeResult(event, took, replay.visionResults());
  }
  const bool showsRoom = isVision || truth != nullptr;
  if (showsRoom) {
    placePersons(service);
    mSpeech.take(event.t, mRoom);
    seePersons(event.t);
  }
  const std::set<int> changed = takePictures(event.t, service);
  if (!changed.empty() || !mDecided.empty()) {
    placePersons(service);
    mShots.show(event.t, mRoom, changed);
    mEvents.change(event.t, mRoom, changed, mDecided);
  }
  if (showsRoom || !changed.empty()) {
    mComposition.take(mRoom);
    mFaults.take(mRoom);
    mStays.take(event.t, mRoom);
    mSpeech.take(event.t, mRoom);
  }
}

void FramingMeter::finish(Replay& replay) {
  replay.finish();
  passTime(mMeasurement.timeLine.length);
  mStays.finish();
  mSpeech.finish();
}

void FramingMeter::passTime(std::int64_t t) {
  const std::int64_t until = mKnowsTruth && hasBegun() ? t : std::min(t, mHoldUntil);
  const std::int64_t time = until - mMeasuredUntil;
  if (time > 0) {
    mMeasurement.truthMs += mKnowsTruth ? time : 0;
    mComposition.last(mMeasuredUntil, until);
    mFaults.last(time);
    mStays.last(until, time);
    mSpeech.last(until, time);
    const bool isAnyOff =
        std::any_of(mRoom.persons.begin(), mRoom.persons.end(),
                    [](const PersonState& person) { return person.visibility == Visibility::Off; });
    mWaits.last(time, isAnyOff ? time : 0);
  }
  mMeasuredUntil = t;
  mMeasurement.timeLine.length = t;
}

void FramingMeter::takeTruth(std::int64_t t, const Truth& truth) {
  // Until now there was who was there before.
  seePersons(t);
  mRoom.persons = peopleOf(truth);
  mPlacedIn.reset();
  mKnowsTruth = true;
}

void FramingMeter::takeResult(const RecordingEvent& event, std::chrono::nanoseconds took,
                              VisionResultReader& reader) {
  ++mMeasurement.visionResults;
  mMeasurement.decisionTime.add(took.count() * kTenthsPerMicrosecond / 1000);
  mHoldUntil = std::min(event.t, std::numeric_limits<std::int64_t>::max() - kLongestHoldMs) + kLongestHoldMs;
  if (!mKnowsTruth) {
    mPlacedIn.reset();
    mRoom.persons = peopleSeen(std::get<BusMessage>(event.what), reader);
  }
}

void FramingMeter::seePersons(std::int64_t t) {
  if (hasBegun()) {
    mEvents.see(t, mRoom);
  }
}

void FramingMeter::placePersons(ProductionRuleIPCService& service) {
  if (mPlacedIn == service.framingMode()) {
    return;
  }
  mPlacedIn = service.framingMode();
  const bool singlesOutSpeakers = mPlacedIn == FramingMode::SpeakerFraming;
  mRoom.owesNewcomers = !singlesOutSpeakers && mStream.value_or(0) == 0;
  for (PersonState& person : mRoom.persons) {
    countOwnFrames(person);
    person.visibility = Visibility::Off;
    person.isSingledOut = person.isClose = false;
    person.appearances.clear();
  }
  for (const StreamPicture& picture : mRoom.pictures) {
    placeIn(picture);
  }
  for (PersonState& person : mRoom.persons) {
    person.framedAsSpeaker =
        singlesOutSpeakers ? person.isSingledOut : person.visibility == Visibility::InView;
  }
}

void FramingMeter::placeIn(const StreamPicture& picture) {
  const auto shown = static_cast<std::size_t>(std::count_if(
      mRoom.persons.begin(), mRoom.persons.end(),
      [&picture](const PersonState& person) { return isRoughlyShownIn(picture, person.heads); }));
  const bool isClose = 2 * shown <= mRoom.persons.size() + 1;
  for (PersonState& person : mRoom.persons) {
    const Appearance appearance = appearanceIn(picture, person.heads);
    person.visibility = std::max(person.visibility, appearance.visibility);
    if (appearance.visibility == Visibility::InView) {
      const FramingType type = picture.frames[static_cast<std::size_t>(appearance.frame)].type;
      person.isSingledOut = person.isSingledOut || !showsEverybody(type);
      person.isClose = person.isClose || isClose;
    }
    person.appearances.push_back(appearance);
  }
}

void FramingMeter::countOwnFrames(PersonState& person) const {
  person.frames = 0;
  person.framesWhole = 0;
  for (const StreamPicture& picture : mRoom.pictures) {
    for (const FrameView& frame : picture.frames) {
      if (std::find(frame.people.begin(), frame.people.end(), person.id) != frame.people.end()) {
        ++person.frames;
        person.framesWhole += visibilityIn(frame, person.heads) == Visibility::InView ? 1 : 0;
      }
    }
  }
}

std::set<int> FramingMeter::takePictures(std::int64_t t, ProductionRuleIPCService& service) {
  std::set<int> changed;
  const std::shared_ptr<BaseLayout> engine = service.trackingMode().getFramingLayout();
  if (engine == nullptr) {
    return changed;
  }
  std::vector<StreamPicture> pictures = picturesOf(engine->getFinalLayoutPtrs());
  if (mStream) {
    pictures.erase(std::remove_if(pictures.begin(), pictures.end(),
                                  [this](const auto& picture) { return picture.stream != *mStream; }),
                   pictures.end());
  }
  // An engine that has just forgotten its layouts leaves its last picture on screen.
  if (pictures.empty() || pictures == mRoom.pictures) {
    return changed;
  }
  for (const StreamPicture& picture : pictures) {
    if (std::find(mRoom.pictures.begin(), mRoom.pictures.end(), picture) == mRoom.pictures.end()) {
      mChanges.show(t, picture, mDecided.count(picture.stream) != 0);
      changed.insert(picture.stream);
    }
  }
  mShots.leave(mRoom, changed);
  mRoom.pictures = std::move(pictures);
  mPlacedIn.reset();
  return changed;
}

}  // namespace fyn::productionrules
