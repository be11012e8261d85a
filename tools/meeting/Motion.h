#pragma once

#include <cstdint>
#include <vector>

#include "tools/base/Random.h"

namespace fyn::productionrules {

/** Where a head is, in pixels of a reference picture of 1280 x 720, and how it is turned. */
struct HeadPose {
  double x = 0;
  double y = 0;
  double height = 0;
  /** Degrees, 0 towards camera 0, positive to the right of its picture. */
  double yaw = 0;
  double pitch = 0;
};

/** How a person moves to a waypoint: starting and stopping gently, or at one speed as within a walk. */
enum class Pace { Eased, Steady };

/** A pose to be reached at a time (milliseconds). */
struct Waypoint {
  std::int64_t t = 0;
  HeadPose pose;
  Pace pace = Pace::Eased;
};

/** What one person does during a meeting. */
class PersonPath {
 public:
  explicit PersonPath(std::vector<Waypoint> waypoints) : mWaypoints(std::move(waypoints)) {}

  HeadPose poseAt(std::int64_t t) const;

  /** From the first to the last waypoint; before and after it the person is not there. */
  bool isThere(std::int64_t t) const { return mWaypoints.front().t <= t && t <= mWaypoints.back().t; }

  const std::vector<Waypoint>& waypoints() const { return mWaypoints; }

 private:
  std::vector<Waypoint> mWaypoints;
};

/**
 * What `count` people do in `duration` milliseconds: each enters by one of two doors, walks past the others
 * to a seat, sits down, leans, turns, slides on the chair, now and then stands up and crosses the room, and
 * leaves before the end. Some go out in between and come back.
 */
std::vector<PersonPath> makePaths(std::uint64_t seed, int count, std::int64_t duration);

}  // namespace fyn::productionrules
