#include "tools/why/PersonCourses.h"

#include <algorithm>
#include <iterator>

#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"
#include "tools/report/RoomPeople.h"

namespace fyn::productionrules {

namespace {

/** A shorter miss of the detector is none, in milliseconds. */
constexpr std::int64_t kMissMs = 1000;

}  // namespace

Visibility roughVisibilityOf(const std::vector<StreamPicture>& pictures, const CameraHeads& person) {
  Visibility best = Visibility::Off;
  for (const StreamPicture& picture : pictures) {
    for (const FrameView& frame : picture.frames) {
      best = std::max(best, roughVisibilityIn(frame, person));
    }
  }
  return best;
}

void PersonCourses::look(const RecordingEvent& event, MomentReplay& replay) {
  mKnowsTruth = mKnowsTruth || std::holds_alternative<Truth>(event.what);
  const auto* const message = std::get_if<BusMessage>(&event.what);
  if (mKnowsTruth && message != nullptr && message->topic == topics::kVisionResult) {
    noteDetected(*message, event.t, replay);
  }
  for (const PersonState& person : replay.room().persons) {
    mLastThere[person.id] = event.t;
    enter(person.id, event.t, fateOf(person, replay.room(), event.t));
  }
  for (const auto& [id, lastThere] : mLastThere) {
    if (lastThere < event.t - (mKnowsTruth ? 0 : kMissMs)) {
      enter(id, lastThere, PersonFate::NotThere);
    }
  }
}

void PersonCourses::noteDetected(const BusMessage& message, std::int64_t t, MomentReplay& replay) {
  const ServiceStateScope scope(replay.replay().state());
  for (const PersonState& person : peopleSeen(message, replay.replay().visionResults())) {
    mLastDetected[person.id] = t;
  }
}

PersonFate PersonCourses::fateOf(const PersonState& person, const RoomState& room, std::int64_t t) const {
  switch (roughVisibilityOf(room.pictures, person.heads)) {
    case Visibility::InView:
      return PersonFate::Shown;
    case Visibility::Cut:
      return PersonFate::Cut;
    case Visibility::Off:
      break;
  }
  const auto detected = mLastDetected.find(person.id);
  const bool isDetected =
      !mKnowsTruth || (detected != mLastDetected.end() && t - detected->second <= kMissMs);
  return isDetected ? PersonFate::OffScreen : PersonFate::NotDetected;
}

void PersonCourses::enter(std::int64_t id, std::int64_t t, PersonFate fate) {
  Course& course = mCourses[id];
  if (course.empty() || course.back().fate != fate) {
    course.push_back({t, fate});
  }
}

const PersonCourses::Stage* stageAt(const PersonCourses::Course& course, std::int64_t t) {
  const auto after = std::find_if(course.begin(), course.end(),
                                  [t](const PersonCourses::Stage& stage) { return stage.since > t; });
  return after == course.begin() ? nullptr : &*std::prev(after);
}

}  // namespace fyn::productionrules
