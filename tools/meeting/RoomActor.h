#pragma once

#include <cstdint>
#include <vector>

#include "tools/base/Random.h"
#include "tools/meeting/Motion.h"
#include "tools/meeting/Room.h"

namespace fyn::productionrules {

/** Where people walk: by the door, along an aisle behind all seats. */
struct RoomPlan {
  /** Metres from the camera. */
  double aisle = 0;
  /** -1 for the left border of the picture, 1 for the right one. */
  double door = 1;
  /** Where somebody stands who shows something at the board. */
  Place board;
};

/** Plays what one person does, one action after the other, and keeps the path. Times in milliseconds. */
class RoomActor {
 public:
  /** At first the person sits at `seat` at `start`. */
  static RoomActor seated(Random random, const RoomPlan& room, const Place& seat, std::int64_t start);

  /** At first the person stands behind the border of the picture on `side` (as `RoomPlan::door`). */
  static RoomActor outside(Random random, const RoomPlan& room, const Place& seat, std::int64_t start,
                           double side);

  std::int64_t time() const { return mWaypoints.back().t; }
  PersonPath path() const { return PersonPath(mWaypoints); }

  /** Sways, turns and leans in at the seat until `t` or a few seconds later. */
  void sitUntil(std::int64_t t);

  void takeSeat();
  void showAtBoard(std::int64_t duration);
  /** From the seat, by the border on `side`. */
  void goOut(double side);
  /** From the aisle. */
  void walkOut(double side);

 private:
  RoomActor(Random random, const RoomPlan& room, const Place& seat, const Place& first, std::int64_t start);

  double centimetres(std::int64_t least, std::int64_t most);
  void moveTo(const Place& place, std::int64_t duration, Pace pace = Pace::Eased);
  void wait(std::int64_t duration);
  void walkTo(double x, double z);
  void leaveSeat();
  void fidget();
  void leanIn();

  Random mRandom;
  const RoomPlan mRoom;
  const Place mSeat;
  /** Metres per second. */
  const double mSpeed;
  Place mPlace;
  std::vector<Waypoint> mWaypoints;
};

}  // namespace fyn::productionrules
