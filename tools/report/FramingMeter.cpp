#include "tools/report/FramingMeter.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "config/PrConfig.h"
#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"

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

/**
 * The persons of a vision result. An engine's people map holds just them, unless people framing bridges the
 * errors of the detector: then the result is read again. Nothing for a text that is no vision result.
 */
std::vector<std::shared_ptr<FynHead>> personsSeen(const RecordingEvent& event, BaseLayout& engine) {
  std::vector<std::shared_ptr<FynHead>> persons;
  if (PrConfig::get().pfSteadyPresenceEnabled) {
    MLData data;
    try {
      data.from_json(nlohmann::json::parse(std::get<BusMessage>(event.what).payload));
    } catch (const nlohmann::json::exception&) {
      return persons;
    }
    persons = data.getHeads();
  } else {
    for (const auto& [id, person] : engine.peopleMap()) {
      persons.push_back(person);
    }
  }
  std::stable_sort(persons.begin(), persons.end(),
                   [](const auto& a, const auto& b) { return a->id < b->id; });
  // Of two with one id the first counts.
  persons.erase(std::unique(persons.begin(), persons.end(),
                            [](const auto& a, const auto& b) { return a->id == b->id; }),
                persons.end());
  return persons;
}

bool hasBox(const FynHead& person) {
  return std::any_of(person.mCamIdAssocHeadMap.begin(), person.mCamIdAssocHeadMap.end(),
                     [](const auto& entry) {
                       const Rect& box = entry.second->bbox;
                       return box.right > box.left && box.bottom > box.top;
                     });
}

bool speaks(const FynHead& person) {
  return std::any_of(person.mCamIdAssocHeadMap.begin(), person.mCamIdAssocHeadMap.end(),
                     [](const auto& entry) { return entry.second->isSpeaker; });
}

}  // namespace

FramingMeter::FramingMeter(std::optional<int> stream)
    : mStream(stream), mChanges(mMeasurement), mComposition(mMeasurement), mEvents(mMeasurement) {}

void FramingMeter::onDecision(const LayoutDecision& decision) {
  if (bringsLayout(decision.kind)) {
    mDecided.insert(decision.streamId);
  }
}

void FramingMeter::handle(Replay& replay, const RecordingEvent& event) {
  passTime(event.t);
  mDecided.clear();
  const auto start = std::chrono::steady_clock::now();
  replay.handle(event);
  const auto took = std::chrono::steady_clock::now() - start;
  if (replay.service() == nullptr) {
    return;
  }
  const ServiceStateScope scope(replay.state());
  const bool isVision = isVisionResult(event);
  if (isVision) {
    ++mMeasurement.visionResults;
    mMeasurement.decisionTime.add(std::chrono::duration_cast<std::chrono::nanoseconds>(took).count() *
                                  kTenthsPerMicrosecond / 1000);
    mHoldUntil =
        std::min(event.t, std::numeric_limits<std::int64_t>::max() - kLongestHoldMs) + kLongestHoldMs;
    takePersons(event, *replay.service());
    placePersons(*replay.service());
    mEvents.see(event.t, mRoom);
  }
  const std::set<int> changed = takePictures(event.t, *replay.service());
  if (!changed.empty() || !mDecided.empty()) {
    placePersons(*replay.service());
    mEvents.change(event.t, mRoom, changed, mDecided);
  }
  if (isVision || !changed.empty()) {
    mComposition.take(mRoom);
  }
}

void FramingMeter::finish(Replay& replay) {
  replay.finish();
  passTime(mMeasurement.timeLine.length);
}

void FramingMeter::passTime(std::int64_t t) {
  mComposition.last(mMeasuredUntil, std::min(t, mHoldUntil));
  mMeasuredUntil = t;
  mMeasurement.timeLine.length = t;
}

void FramingMeter::takePersons(const RecordingEvent& event, ProductionRuleIPCService& service) {
  mPeople.clear();
  mRoom.persons.clear();
  const std::shared_ptr<BaseLayout> engine = service.trackingMode().getFramingLayout();
  if (engine == nullptr) {
    return;
  }
  for (const std::shared_ptr<FynHead>& person : personsSeen(event, *engine)) {
    if (hasBox(*person)) {
      mPeople.push_back(person);
    }
  }
  for (const std::shared_ptr<FynHead>& person : mPeople) {
    PersonState state;
    state.id = person->id;
    state.speaks = speaks(*person);
    mRoom.persons.push_back(std::move(state));
  }
}

void FramingMeter::placePersons(ProductionRuleIPCService& service) {
  const bool singlesOutSpeakers = service.framingMode() == FramingMode::SpeakerFraming;
  mRoom.owesNewcomers = !singlesOutSpeakers && mStream.value_or(0) == 0;
  for (std::size_t index = 0; index < mPeople.size(); ++index) {
    PersonState& state = mRoom.persons[index];
    countOwnFrames(*mPeople[index], state);
    state.visibility = Visibility::Off;
    state.framedAsSpeaker = false;
    state.appearances.clear();
    for (const StreamPicture& picture : mRoom.pictures) {
      const Appearance appearance = appearanceIn(picture, *mPeople[index]);
      state.visibility = std::max(state.visibility, appearance.visibility);
      if (appearance.visibility == Visibility::InView) {
        const FramingType type = picture.frames[static_cast<std::size_t>(appearance.frame)].type;
        state.framedAsSpeaker = state.framedAsSpeaker || !singlesOutSpeakers || !showsEverybody(type);
      }
      state.appearances.push_back(appearance);
    }
  }
}

void FramingMeter::countOwnFrames(const FynHead& person, PersonState& state) const {
  state.frames = 0;
  state.framesWhole = 0;
  for (const StreamPicture& picture : mRoom.pictures) {
    for (const FrameView& frame : picture.frames) {
      if (frame.people.count(person.id) != 0) {
        ++state.frames;
        state.framesWhole += visibilityIn(frame, person) == Visibility::InView ? 1 : 0;
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
  mRoom.pictures = std::move(pictures);
  return changed;
}

}  // namespace fyn::productionrules
