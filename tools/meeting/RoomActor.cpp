#include "tools/meeting/RoomActor.h"

#include <cmath>

namespace fyn::productionrules {

namespace {

/** Metres; so short that perspective bends none of them. */
constexpr double kStep = 0.3;
constexpr double kGettingUp = kStanding - kSeated;

double standingHeight(const Place& seat) {
  return seat.height + kGettingUp < kStanding + kGettingUp / 2 ? seat.height + kGettingUp : seat.height;
}

}  // namespace

RoomActor::RoomActor(Random random, const RoomPlan& room, const Place& seat, const Place& first,
                     std::int64_t start)
    : mRandom(random),
      mRoom(room),
      mSeat(seat),
      mSpeed(static_cast<double>(mRandom.between(100, 140)) / 100),
      mPlace(first),
      mWaypoints({{start, seenFromCamera(first)}}) {}

RoomActor RoomActor::seated(Random random, const RoomPlan& room, const Place& seat, std::int64_t start) {
  return RoomActor(random, room, seat, seat, start);
}

RoomActor RoomActor::outside(Random random, const RoomPlan& room, const Place& seat, std::int64_t start,
                             double side) {
  Place first = seat;
  first.z = room.aisle;
  first.x = side * outOfSight(room.aisle);
  first.height = standingHeight(seat);
  return RoomActor(random, room, seat, first, start);
}

double RoomActor::centimetres(std::int64_t least, std::int64_t most) {
  return static_cast<double>(mRandom.between(least, most)) / 100;
}

void RoomActor::moveTo(const Place& place, std::int64_t duration, Pace pace) {
  mPlace = place;
  mWaypoints.push_back({time() + duration, seenFromCamera(place), pace});
}

void RoomActor::wait(std::int64_t duration) {
  moveTo(mPlace, duration);
}

void RoomActor::walkTo(double x, double z) {
  const Place from = mPlace;
  const double distance = std::sqrt((x - from.x) * (x - from.x) + (z - from.z) * (z - from.z));
  const auto steps = static_cast<int>(distance / kStep) + 1;
  Place walking = from;
  if (std::abs(x - from.x) > std::abs(z - from.z)) {
    walking.yaw = x > from.x ? 80 : -80;
  } else {
    walking.yaw = z > from.z ? 150 : 0;
  }
  moveTo(walking, 250);
  for (int step = 1; step <= steps; ++step) {
    walking.x = from.x + (x - from.x) * step / steps;
    walking.z = from.z + (z - from.z) * step / steps;
    moveTo(walking, 1 + static_cast<std::int64_t>(distance / steps / mSpeed * 1000), Pace::Steady);
  }
}

void RoomActor::takeSeat() {
  walkTo(mSeat.x, mRoom.aisle);
  walkTo(mSeat.x, mSeat.z);
  moveTo(mSeat, mRandom.between(1000, 1800));
}

void RoomActor::leaveSeat() {
  Place standing = mSeat;
  standing.height = standingHeight(mSeat);
  moveTo(standing, mRandom.between(900, 1600));
  walkTo(mSeat.x, mRoom.aisle);
}

void RoomActor::showAtBoard(std::int64_t duration) {
  leaveSeat();
  walkTo(mRoom.board.x, mRoom.board.z);
  const double height = mPlace.height;
  for (const std::int64_t end = time() + duration; time() < end;) {
    Place pacing = mRoom.board;
    pacing.x += centimetres(-25, 25);
    pacing.height = height;
    pacing.yaw = mRandom.chance(700'000) ? mRoom.board.yaw : 110;
    moveTo(pacing, mRandom.between(800, 1600));
    wait(mRandom.between(1000, 6000));
  }
  walkTo(mRoom.board.x, mRoom.aisle);
  takeSeat();
}

void RoomActor::goOut(double side) {
  leaveSeat();
  walkOut(side);
}

void RoomActor::walkOut(double side) {
  walkTo(side * outOfSight(mRoom.aisle), mRoom.aisle);
}

void RoomActor::leanIn() {
  Place leaning = mSeat;
  leaning.x *= 0.93;
  leaning.z -= centimetres(6, 18);
  leaning.height -= centimetres(2, 6);
  leaning.pitch -= static_cast<double>(mRandom.between(5, 20));
  moveTo(leaning, mRandom.between(600, 1200));
  wait(mRandom.between(2000, 9000));
  moveTo(mSeat, mRandom.between(600, 1200));
}

void RoomActor::fidget() {
  const std::int64_t choice = mRandom.between(0, 99);
  if (choice < 60) {
    Place swaying = mSeat;
    swaying.x += centimetres(-6, 6);
    swaying.z += centimetres(-5, 5);
    swaying.height += centimetres(-2, 2);
    swaying.yaw += static_cast<double>(mRandom.between(-15, 15));
    moveTo(swaying, mRandom.between(1500, 4000));
  } else if (choice < 75) {
    wait(mRandom.between(1000, 6000));
  } else if (choice < 92) {
    Place turned = mPlace;
    turned.yaw =
        mSeat.yaw + static_cast<double>(mRandom.between(25, 70)) * (mRandom.chance(500'000) ? 1 : -1);
    moveTo(turned, mRandom.between(400, 900));
    wait(mRandom.between(1000, 8000));
  } else {
    leanIn();
  }
}

void RoomActor::sitUntil(std::int64_t t) {
  while (time() < t) {
    fidget();
  }
}

}  // namespace fyn::productionrules
