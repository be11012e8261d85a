#include "tools/meeting/Motion.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr double kWidth = 1280;
constexpr double kFloorLine = 400;
constexpr int kSeatsPerRow = 8;
/** Pixels per millisecond. */
constexpr double kWalkingSpeed = 0.25;
/** So far outside the picture that no part of a head is seen. */
constexpr double kBehindDoor = 120;

/** Writes a person's waypoints one action after the other. */
class Actor {
 public:
  Actor(Random random, const HeadPose& seat, std::int64_t start, std::int64_t end)
      : mRandom(random), mSeat(seat), mTime(start), mEnd(end) {}

  std::vector<Waypoint> play() {
    enter();
    while (mTime < timeToLeave()) {
      act();
    }
    leave();
    return std::move(mWaypoints);
  }

 private:
  /** The longest of the short actions, and the way to the door, end before the person must be gone. */
  std::int64_t timeToLeave() const { return mEnd - 20000; }

  double standingY() const { return mSeat.y - mSeat.height * 0.9; }

  double doorX() { return mRandom.chance(500'000) ? -kBehindDoor : kWidth + kBehindDoor; }

  /** Reaches `pose` after `duration` milliseconds. */
  void moveTo(const HeadPose& pose, std::int64_t duration) {
    mTime += duration;
    mPose = pose;
    mWaypoints.push_back({mTime, pose, Pace::Eased});
  }

  void wait(std::int64_t duration) { moveTo(mPose, duration); }

  void walkTo(double x) {
    const double distance = x > mPose.x ? x - mPose.x : mPose.x - x;
    HeadPose walking = mPose;
    walking.yaw = x > mPose.x ? 70 : -70;
    moveTo(walking, 200);
    walking.x = x;
    moveTo(walking, std::max<std::int64_t>(300, static_cast<std::int64_t>(distance / kWalkingSpeed)));
  }

  void enter() {
    mPose = mSeat;
    mPose.x = doorX();
    mPose.y = standingY();
    mWaypoints.push_back({mTime, mPose, Pace::Eased});
    walkTo(mSeat.x);
    sitDown();
  }

  void leave() {
    standUp();
    walkTo(doorX());
  }

  void sitDown() {
    HeadPose facing = mPose;
    facing.yaw = mSeat.yaw;
    moveTo(facing, 400);
    moveTo(mSeat, mRandom.between(800, 1500));
  }

  void standUp() {
    HeadPose standing = mPose;
    standing.y = standingY();
    moveTo(standing, mRandom.between(700, 1300));
  }

  /** A change of the seated pose that is held for a while and taken back. */
  void holdAndReturn(const HeadPose& pose, std::int64_t hold) {
    moveTo(pose, mRandom.between(400, 900));
    wait(hold);
    moveTo(mSeat, mRandom.between(400, 900));
  }

  void lean() {
    HeadPose leaning = mSeat;
    leaning.x += static_cast<double>(mRandom.between(-60, 60)) / 100 * mSeat.height;
    leaning.height *= static_cast<double>(mRandom.between(92, 118)) / 100;
    leaning.pitch = static_cast<double>(mRandom.between(-20, 10));
    holdAndReturn(leaning, mRandom.between(1500, 9000));
  }

  void turn() {
    HeadPose turned = mSeat;
    turned.yaw = static_cast<double>(mRandom.between(40, 110)) * (mRandom.chance(500'000) ? 1 : -1);
    holdAndReturn(turned, mRandom.between(1000, 8000));
  }

  void slide() {
    mSeat.x = std::clamp(mSeat.x + static_cast<double>(mRandom.between(-40, 40)), 60.0, kWidth - 60);
    moveTo(mSeat, mRandom.between(600, 1500));
  }

  void cross() {
    standUp();
    walkTo(static_cast<double>(mRandom.between(120, 1160)));
    HeadPose facing = mPose;
    facing.yaw = static_cast<double>(mRandom.between(-30, 30));
    moveTo(facing, 400);
    wait(mRandom.between(4000, 15000));
    walkTo(mSeat.x);
    sitDown();
  }

  void goOutAndReturn() {
    standUp();
    walkTo(doorX());
    wait(mRandom.between(5000, 30000));
    walkTo(mSeat.x);
    sitDown();
  }

  void act() {
    wait(std::min(mRandom.between(3000, 20000), std::max<std::int64_t>(1, timeToLeave() - mTime)));
    const std::int64_t choice = mRandom.between(0, 99);
    // The long ones only when there is time for them.
    const bool hasTime = mTime + 60000 < mEnd;
    if (choice < 35) {
      lean();
    } else if (choice < 70) {
      turn();
    } else if (choice < 85 || !hasTime) {
      slide();
    } else if (choice < 95) {
      cross();
    } else {
      goOutAndReturn();
    }
  }

  Random mRandom;
  HeadPose mSeat;
  HeadPose mPose;
  std::int64_t mTime;
  const std::int64_t mEnd;
  std::vector<Waypoint> mWaypoints;
};

/** Seats stand in rows of up to eight; the rows behind are higher up and their heads smaller. */
HeadPose seatOf(Random& random, int index, int count) {
  const int rows = (count + kSeatsPerRow - 1) / kSeatsPerRow;
  const int perRow = (count + rows - 1) / rows;
  const int row = index / perRow;
  const int inRow = std::min(perRow, count - row * perRow);
  HeadPose seat;
  seat.height = std::min(110.0, 900.0 / perRow) * 4 / (4 + row);
  seat.x = kWidth * (index % perRow + 1) / (inRow + 1) + static_cast<double>(random.between(-25, 25));
  seat.y = kFloorLine - 45.0 * row + static_cast<double>(random.between(-20, 20));
  seat.yaw = static_cast<double>(random.between(-25, 25));
  seat.pitch = static_cast<double>(random.between(-8, 4));
  return seat;
}

double smooth(double share) {
  return share * share * (3 - 2 * share);
}

double blend(double from, double to, double share) {
  return from + (to - from) * share;
}

}  // namespace

HeadPose PersonPath::poseAt(std::int64_t t) const {
  const auto next = std::upper_bound(mWaypoints.begin(), mWaypoints.end(), t,
                                     [](std::int64_t time, const Waypoint& point) { return time < point.t; });
  if (next == mWaypoints.begin()) {
    return mWaypoints.front().pose;
  }
  const Waypoint& from = *(next - 1);
  if (next == mWaypoints.end()) {
    return from.pose;
  }
  const double time = static_cast<double>(t - from.t) / static_cast<double>(next->t - from.t);
  const double share = next->pace == Pace::Eased ? smooth(time) : time;
  const HeadPose& a = from.pose;
  const HeadPose& b = next->pose;
  return {blend(a.x, b.x, share), blend(a.y, b.y, share), blend(a.height, b.height, share),
          blend(a.yaw, b.yaw, share), blend(a.pitch, b.pitch, share)};
}

std::vector<PersonPath> makePaths(std::uint64_t seed, int count, std::int64_t duration) {
  std::vector<PersonPath> paths;
  const std::int64_t arrival = std::min<std::int64_t>(60000, duration / 4);
  const std::int64_t departure = std::min<std::int64_t>(30000, duration / 6);
  for (int index = 0; index < count; ++index) {
    Random random(seed, static_cast<std::uint64_t>(index) + 1);
    const HeadPose seat = seatOf(random, index, count);
    const std::int64_t start = index == 0 ? 1000 : random.between(1500, 1500 + arrival);
    const std::int64_t end = duration - random.between(0, departure);
    paths.emplace_back(Actor(random, seat, start, end).play());
  }
  return paths;
}

}  // namespace fyn::productionrules
