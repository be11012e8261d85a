#include "tools/meeting/Room.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

/** A lens of 80 degrees in the reference picture of 1280 x 720: pixels of 1 metre in a distance of 1 metre.
 */
constexpr double kFocal = 763;
constexpr double kMiddle = 640;
/** The line of the horizon; the camera looks down a little. */
constexpr double kHorizon = 240;
constexpr double kCameraHeight = 1.7;
constexpr double kHeadHeight = 0.25;

/** Of the way to the border of the picture: nobody sits further out. */
constexpr double kFarthestOut = 0.7;
constexpr double kNearest = 2.2;

/** Within a thousandth or two, and the same on every machine; degrees from -180 to 180. */
double sine(double degrees) {
  const double size = degrees < 0 ? -degrees : degrees;
  const double product = size * (180 - size);
  const double value = 4 * product / (40500 - product);
  return degrees < 0 ? -value : value;
}

double cosine(double degrees) {
  return sine(90 - (degrees < 0 ? -degrees : degrees));
}

/** How far from the camera a line of people must be to fit into the picture. */
double distanceFor(double halfWidth) {
  return std::max(kNearest, halfWidth / kFarthestOut);
}

/** A round table whose side towards the camera is free; they look half at each other, half at the screen. */
Place tableSeat(int index, int count) {
  // At a large table nobody sits so near the camera as to hide a neighbour.
  const double arc = 260 - 7 * std::max(0, count - 6);
  const double angle = arc * ((index + 0.5) / count - 0.5);
  const double radius = std::max(1.0, 0.2 * count);
  return {radius * sine(angle), std::max(kNearest, 1.75 * radius) + radius * cosine(angle), kSeated,
          -0.6 * angle, 0};
}

Place rowSeat(int index, int count) {
  constexpr double kApart = 0.8;
  const double x = kApart * (index - (count - 1) / 2.0);
  return {x, distanceFor(kApart * (count - 1) / 2.0), kSeated, -8 * x, 0};
}

/** Small tables for two beside each other, every other one further back. */
Place pairSeat(int index, int count) {
  constexpr double kTables = 1.7;
  constexpr double kHalfPair = 0.32;
  const int pairs = (count + 1) / 2;
  const int pair = index / 2;
  const double side = index % 2 == 0 ? -1 : 1;
  const double farthest = kTables * (pairs - 1) / 2.0 + kHalfPair;
  return {kTables * (pair - (pairs - 1) / 2.0) + side * kHalfPair, distanceFor(farthest) + (pair % 2) * 0.6,
          kSeated, -30 * side, 0};
}

/** The first one stands at a board at the right wall, the others sit at a table and look there. */
Place boardSeat(int index, int count) {
  if (index == 0) {
    const double z = std::max(3.2, 0.45 * count);
    return {0.55 * z, z, kStanding, -35, 0};
  }
  Place seat = tableSeat(index - 1, count - 1);
  seat.yaw = std::min(60.0, seat.yaw + 30);
  return seat;
}

}  // namespace

const std::array<Seating, 4> kSeatings{{
    {"table", "round a table, those at its far end smaller and higher up", &tableSeat},
    {"row", "side by side", &rowSeat},
    {"pairs", "in twos at small tables", &pairSeat},
    {"board", "one stands at a board, the others sit round a table", &boardSeat},
}};

HeadPose seenFromCamera(const Place& place) {
  HeadPose pose;
  pose.x = kMiddle + kFocal * place.x / place.z;
  pose.y = kHorizon + kFocal * (kCameraHeight - place.height) / place.z;
  pose.height = kFocal * kHeadHeight / place.z;
  pose.yaw = place.yaw;
  pose.pitch = place.pitch;
  return pose;
}

double outOfSight(double z) {
  return kMiddle / kFocal * z + kHeadHeight;
}

const Seating* findSeating(const std::string& name) {
  const auto* const row = std::find_if(kSeatings.begin(), kSeatings.end(),
                                       [&name](const Seating& seating) { return name == seating.name; });
  return row == kSeatings.end() ? nullptr : row;
}

std::vector<Place> placesOf(const Seating& seating, int count, Random& random) {
  std::vector<Place> places;
  const auto centimetres = [&random](std::int64_t most) {
    return static_cast<double>(random.between(-most, most)) / 100;
  };
  for (int index = 0; index < count; ++index) {
    Place place = seating.seat(index, count);
    place.x += centimetres(5);
    place.z += centimetres(6);
    place.height += centimetres(6);
    place.yaw += static_cast<double>(random.between(-10, 10));
    place.pitch = static_cast<double>(random.between(-8, 4));
    places.push_back(place);
  }
  return places;
}

}  // namespace fyn::productionrules
