#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/Random.h"
#include "tools/meeting/Motion.h"

namespace fyn::productionrules {

/**
 * Where a head is in a room that camera 0 looks into from the front wall, a little above those who sit.
 * Metres: to the right of the camera's axis, away from the camera, above the floor. Degrees as in HeadPose.
 */
struct Place {
  double x = 0;
  double z = 1;
  double height = 0;
  double yaw = 0;
  double pitch = 0;
};

HeadPose seenFromCamera(const Place& place);

/** How far from the axis somebody stands who is just out of the picture, metres, `z` metres from the camera.
 */
double outOfSight(double z);

/** A way in which people sit. */
struct Seating {
  static constexpr int kMostPeople = 12;

  const char* name;
  const char* help;
  /** Of person `index` of `count`. */
  Place (*seat)(int index, int count);
};

extern const std::array<Seating, 4> kSeatings;

/** Nothing for an unknown name. */
const Seating* findSeating(const std::string& name);

/** Where `count` people sit, or stand, no two alike from seed to seed. */
std::vector<Place> placesOf(const Seating& seating, int count, Random& random);

/** Metres from the floor to the middle of the head. */
inline constexpr double kSeated = 1.2;
inline constexpr double kStanding = 1.65;

}  // namespace fyn::productionrules
