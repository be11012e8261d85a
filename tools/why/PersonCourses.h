#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/report/Picture.h"
#include "tools/why/MomentReplay.h"

namespace fyn::productionrules {

/** What has become of a person. */
enum class PersonFate {
  /** Not in the room; without the truth: not in the vision results. */
  NotThere,
  /** In the room by the truth, but not in the vision results. */
  NotDetected,
  OffScreen,
  Cut,
  Shown,
};

/** How much of the person some stream shows, as a viewer would say it. */
Visibility roughVisibilityOf(const std::vector<StreamPicture>& pictures, const CameraHeads& person);

/** Follows everybody through a replay. A detector's miss of up to a second changes nothing. */
class PersonCourses {
 public:
  /** A fate and from when on, in milliseconds from the start of the recording. */
  struct Stage {
    std::int64_t since = 0;
    PersonFate fate = PersonFate::NotThere;
  };
  using Course = std::vector<Stage>;

  /** Looks at what the replay shows after `event`. */
  void look(const RecordingEvent& event, MomentReplay& replay);

  /** The stages of everybody who was ever there, by the person's id. */
  const std::map<std::int64_t, Course>& courses() const { return mCourses; }

  /** The recording tells who is there. */
  bool knowsTruth() const { return mKnowsTruth; }

 private:
  void noteDetected(const BusMessage& message, std::int64_t t, MomentReplay& replay);
  PersonFate fateOf(const PersonState& person, const RoomState& room, std::int64_t t) const;
  void enter(std::int64_t id, std::int64_t t, PersonFate fate);

  std::map<std::int64_t, Course> mCourses;
  std::map<std::int64_t, std::int64_t> mLastThere;
  std::map<std::int64_t, std::int64_t> mLastDetected;
  bool mKnowsTruth = false;
};

/** The stage of a moment; null before the first. */
const PersonCourses::Stage* stageAt(const PersonCourses::Course& course, std::int64_t t);

}  // namespace fyn::productionrules
